#include "recordset.h"

#include "base/erreur.h"
#include "columns.h"

#include <algorithm>
#include <optional>

namespace recordset {

using veldra::Erreur;
namespace err = veldra::err;

struct Recordset::Table {
    std::vector<Field> fields;
    std::vector<Column> columns; // one per field, made when the record set opens
    size_t rows = 0;

    void appendRow() {
        for (Column& c : columns)
            c.appendNull();
        ++rows;
    }
    void eraseRow(size_t row) {
        for (Column& c : columns)
            c.erase(row);
        --rows;
    }
};

namespace {

[[noreturn]] void noCurrentRecord() {
    throw Erreur(err::PasDEnregistrement,
                 QStringLiteral("BOF ou EOF est égal à True, ou l'enregistrement actuel a été "
                                "supprimé. L'opération demandée requiert un enregistrement "
                                "actuel."));
}

} // namespace

Recordset::Recordset() : table_(std::make_shared<Table>()) {}

void Recordset::appendField(const QString& name, DataType type, qint32 definedSize) {
    if (isOpen())
        throw Erreur(err::ObjetOuvert,
                     QStringLiteral("Opération non autorisée si l'objet est ouvert."));
    if (name.trimmed().isEmpty())
        throw Erreur(err::ArgumentsIncorrects, QStringLiteral("Nom de colonne vide."));
    if (definedSize < 0)
        throw Erreur(err::ArgumentsIncorrects,
                     QStringLiteral("Taille négative pour la colonne « %1 ».").arg(name));
    if (fieldIndex(name) >= 0)
        throw Erreur(err::ChampEnDouble,
                     QStringLiteral("Impossible d'ajouter la colonne « %1 » : une colonne de ce "
                                    "nom existe déjà.")
                         .arg(name));
    table_->fields.push_back(Field{name, type, definedSize});
}

const std::vector<Field>& Recordset::fields() const {
    return table_->fields;
}

qsizetype Recordset::fieldIndex(QStringView name) const {
    const auto& fields = table_->fields;
    for (qsizetype i = 0; i < qsizetype(fields.size()); ++i)
        if (QStringView(fields[size_t(i)].name).compare(name, Qt::CaseInsensitive) == 0)
            return i;
    return -1;
}

qsizetype Recordset::columnOf(QStringView name) const {
    const qsizetype i = fieldIndex(name);
    if (i < 0)
        throw Erreur(err::ChampInconnu,
                     QStringLiteral("La colonne « %1 » est introuvable.").arg(name.toString()));
    return i;
}

const Field& Recordset::field(QStringView name) const {
    return table_->fields[size_t(columnOf(name))];
}

void Recordset::open() {
    if (isOpen())
        throw Erreur(err::ObjetOuvert,
                     QStringLiteral("Opération non autorisée si l'objet est ouvert."));
    if (table_->columns.empty())
        for (const Field& f : table_->fields)
            table_->columns.emplace_back(f.type);
    state_ = State::Open;
    editMode_ = EditMode::None;
    position_ = table_->rows == 0 ? -1 : 0;
}

void Recordset::close() {
    requireOpen();
    // Clones keep the rows; this object keeps only its column declarations.
    table_ = std::make_shared<Table>(Table{table_->fields, {}});
    state_ = State::Closed;
    position_ = -1;
    editMode_ = EditMode::None;
    pendingOriginal_.reset();
}

RecordsetPtr Recordset::clone() const {
    requireOpen();
    auto copy = std::make_shared<Recordset>();
    copy->table_ = table_;
    copy->state_ = State::Open;
    copy->position_ = table_->rows == 0 ? -1 : 0;
    return copy;
}

void Recordset::requireOpen() const {
    if (!isOpen())
        throw Erreur(err::ObjetFerme,
                     QStringLiteral("Opération non autorisée si l'objet est fermé."));
}

qint32 Recordset::recordCount() const {
    requireOpen();
    return qint32(table_->rows);
}

bool Recordset::bof() const {
    requireOpen();
    return table_->rows == 0 || position_ < 0;
}

bool Recordset::eof() const {
    requireOpen();
    return table_->rows == 0 || position_ >= qint32(table_->rows);
}

void Recordset::moveFirst() {
    update();
    if (table_->rows == 0)
        noCurrentRecord();
    position_ = 0;
}

void Recordset::moveLast() {
    update();
    if (table_->rows == 0)
        noCurrentRecord();
    position_ = qint32(table_->rows) - 1;
}

void Recordset::moveNext() {
    if (eof())
        noCurrentRecord();
    update();
    ++position_;
}

void Recordset::movePrevious() {
    if (bof())
        noCurrentRecord();
    update();
    --position_;
}

void Recordset::addNew() {
    update();
    table_->appendRow();
    positionBeforeAdd_ = position_;
    position_ = qint32(table_->rows) - 1;
    editMode_ = EditMode::Add;
}

void Recordset::update() {
    requireOpen();
    editMode_ = EditMode::None;
    pendingOriginal_.reset();
}

void Recordset::cancelUpdate() {
    requireOpen();
    if (editMode_ == EditMode::Add) {
        table_->eraseRow(size_t(position_));
        position_ = positionBeforeAdd_;
    } else if (editMode_ == EditMode::InProgress && pendingOriginal_) {
        const size_t row = currentRow();
        for (size_t c = 0; c < pendingOriginal_->size(); ++c)
            table_->columns[c].set(row, (*pendingOriginal_)[c]);
    }
    editMode_ = EditMode::None;
    pendingOriginal_.reset();
}

EditMode Recordset::editMode() const {
    requireOpen();
    return editMode_;
}

size_t Recordset::currentRow() const {
    if (bof() || eof())
        noCurrentRecord();
    return size_t(position_);
}

QVariant Recordset::value(QStringView name) const {
    return value(columnOf(name));
}

QVariant Recordset::value(qsizetype column) const {
    requireOpen();
    if (column < 0 || column >= qsizetype(table_->fields.size()))
        throw Erreur(err::ChampInconnu,
                     QStringLiteral("La colonne n° %1 est introuvable.").arg(column));
    return table_->columns[size_t(column)].get(currentRow());
}

void Recordset::setValue(QStringView name, const QVariant& value) {
    requireOpen();
    setValue(columnOf(name), value);
}

void Recordset::setValue(qsizetype column, const QVariant& value) {
    const Field& f = writable(column);
    const size_t row = currentRow();
    // Coerce first, so a refused value leaves the record as it was. A text or a real
    // given to a column of its own type is stored as it comes.
    const bool ready = !value.data_ptr().is_null &&
                       ((f.type == DataType::VarWChar && value.typeId() == QMetaType::QString) ||
                        (f.type == DataType::Double && value.typeId() == QMetaType::Double));
    QVariant coerced;
    if (!ready)
        coerced = toColumn(value, f.type);
    const QVariant& stored = ready ? value : coerced;
    if (f.type == DataType::VarWChar && stored.isValid())
        checkLength(f, static_cast<const QString*>(stored.constData())->size());
    beginEdit(row);
    table_->columns[size_t(column)].set(row, stored);
}

void Recordset::setText(qsizetype column, const QString& text) {
    const Field& f = writable(column);
    if (f.type != DataType::VarWChar)
        return setValue(column, QVariant(text));
    const size_t row = currentRow();
    checkLength(f, text.size());
    beginEdit(row);
    table_->columns[size_t(column)].setText(row, text);
}

void Recordset::setNumber(qsizetype column, double number) {
    const DataType type = writable(column).type;
    if (type != DataType::Double && type != DataType::SmallInt)
        return setValue(column, QVariant(number));
    const size_t row = currentRow();
    Column& c = table_->columns[size_t(column)];
    if (type == DataType::SmallInt) {
        const qint16 n = toInt16(number); // before the edit begins: it may refuse
        beginEdit(row);
        c.setInt16(row, n);
        return;
    }
    beginEdit(row);
    c.setDouble(row, number);
}

void Recordset::reserve(qsizetype rows) {
    requireOpen();
    for (Column& c : table_->columns)
        c.reserve(size_t(std::max<qsizetype>(rows, 0)));
}

const Field& Recordset::writable(qsizetype column) const {
    requireOpen();
    if (column < 0 || column >= qsizetype(table_->fields.size()))
        throw Erreur(err::ChampInconnu,
                     QStringLiteral("La colonne n° %1 est introuvable.").arg(column));
    return table_->fields[size_t(column)];
}

void Recordset::checkLength(const Field& f, qsizetype length) {
    if (length > f.definedSize)
        throw Erreur(err::TexteTropLong,
                     QStringLiteral("Le texte de %1 caractères dépasse la taille de la "
                                    "colonne « %2 » (%3 caractères).")
                         .arg(length)
                         .arg(f.name)
                         .arg(f.definedSize));
}

// The first change to a record outside an add keeps what it held, for cancelUpdate.
void Recordset::beginEdit(size_t row) {
    if (editMode_ != EditMode::None)
        return;
    std::vector<QVariant> original;
    original.reserve(table_->columns.size());
    for (const Column& c : table_->columns)
        original.push_back(c.get(row));
    pendingOriginal_ = std::move(original);
    editMode_ = EditMode::InProgress;
}

} // namespace recordset
