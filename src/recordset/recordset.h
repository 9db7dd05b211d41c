#pragma once
// A disconnected, in-memory record set: the way records travel between the control and
// its host. Columns are declared while it is closed, then it is opened and filled with
// add new / set values / update. A clone is a second cursor over the same rows; it stays
// usable after the original is closed. Column names are matched without regard to case.
//
// Every misuse throws veldra::Erreur: using a closed record set (ObjetFerme), reading or
// writing with no current record (PasDEnregistrement), an unknown column (ChampInconnu),
// a value the column cannot hold (TypeIncompatible, Depassement, TexteTropLong).

#include "value.h"

#include <QString>
#include <QVariant>
#include <memory>
#include <optional>
#include <vector>

namespace recordset {

struct Field {
    QString name;
    DataType type;
    qint32 definedSize = 0; // characters, for text columns
};

// The platform's codes: the state and the edit mode are read by hosts.
enum class State : int { Closed = 0, Open = 1 };
enum class EditMode : int { None = 0, InProgress = 1, Add = 2 };

class Recordset;
using RecordsetPtr = std::shared_ptr<Recordset>;

class Recordset {
public:
    Recordset();

    // Columns, only while closed.
    void appendField(const QString& name, DataType type, qint32 definedSize = 0);
    const std::vector<Field>& fields() const;
    qsizetype fieldIndex(QStringView name) const; // -1 when unknown
    const Field& field(QStringView name) const;

    void open();
    void close();
    State state() const { return state_; }
    bool isOpen() const { return state_ == State::Open; }

    // An independent cursor, positioned on the first record, over the same rows.
    RecordsetPtr clone() const;

    qint32 recordCount() const;
    bool bof() const;
    bool eof() const;
    void moveFirst();
    void moveLast();
    void moveNext();
    void movePrevious();

    void addNew();
    void update();
    void cancelUpdate();
    EditMode editMode() const;

    // Values of the current record. Reading gives Null as an invalid QVariant.
    QVariant value(QStringView name) const;
    QVariant value(qsizetype column) const;
    void setValue(QStringView name, const QVariant& value);
    void setValue(qsizetype column, const QVariant& value);
    // The same for a text or a real, without a variant per cell when the column holds
    // that type; any other column takes it as setValue would.
    void setText(qsizetype column, const QString& text);
    void setNumber(qsizetype column, double number);
    // Room for that many records, for a fill whose size is known.
    void reserve(qsizetype rows);

private:
    struct Table;

    void requireOpen() const;
    qsizetype columnOf(QStringView name) const;
    size_t currentRow() const; // its index; PasDEnregistrement when there is none
    const Field& writable(qsizetype column) const; // ObjetFerme, ChampInconnu
    static void checkLength(const Field& f, qsizetype length);
    void beginEdit(size_t row);

    std::shared_ptr<Table> table_;
    State state_ = State::Closed;
    qint32 position_ = -1; // -1 before the first record, recordCount() after the last
    EditMode editMode_ = EditMode::None;
    qint32 positionBeforeAdd_ = -1;
    std::optional<std::vector<QVariant>> pendingOriginal_; // for cancelUpdate of an edit
};

} // namespace recordset

using RecordsetPtr = recordset::RecordsetPtr;
