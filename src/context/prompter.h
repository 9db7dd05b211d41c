#pragma once
// Every message the control shows its user goes through a Prompter: message boxes by
// default, a recorder in tests. Button sets and answers use the usual message-box codes.

#include <QString>

class QWidget;

namespace veldra {

namespace boutons {
inline constexpr int Ok = 0;
inline constexpr int OkAnnuler = 1;
inline constexpr int OuiNonAnnuler = 3;
inline constexpr int OuiNon = 4;
inline constexpr int Critique = 16;
inline constexpr int Question = 32;
inline constexpr int Exclamation = 48;
inline constexpr int Information = 64;
} // namespace boutons

namespace reponse {
inline constexpr int Ok = 1;
inline constexpr int Annuler = 2;
inline constexpr int Oui = 6;
inline constexpr int Non = 7;
} // namespace reponse

class Prompter {
public:
    virtual ~Prompter() = default;
    // Shows `texte` titled `titre` with the buttons and icon of `style`; the answer's code.
    virtual int message(const QString& texte, int style = boutons::Ok,
                        const QString& titre = {}) = 0;
};

// QMessageBox, owned by the control's window.
class BoitePrompter : public Prompter {
public:
    explicit BoitePrompter(QWidget* parent) : parent_(parent) {}
    int message(const QString& texte, int style, const QString& titre) override;

private:
    QWidget* parent_;
};

} // namespace veldra
