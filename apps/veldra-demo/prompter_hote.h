#pragma once
// The demo's answer to the control's messages: passed on to the user (message boxes, or
// the error output when nobody watches), except while the host opens a plan, when they
// are kept so the host can say in one message what went wrong.

#include "context/prompter.h"

#include <QStringList>
#include <memory>

namespace veldra::demo {

class PrompterHote : public Prompter {
public:
    explicit PrompterHote(std::unique_ptr<Prompter> interieur);
    int message(const QString& texte, int style, const QString& titre) override;

    void setInterieur(std::unique_ptr<Prompter> interieur) { interieur_ = std::move(interieur); }

    // Keeps the messages in `retenus` for as long as it lives, answering each with the
    // choice that changes nothing.
    class Retenue {
    public:
        Retenue(PrompterHote& p, QStringList& retenus) : p_(p), avant_(p.retenus_) {
            p.retenus_ = &retenus;
        }
        ~Retenue() { p_.retenus_ = avant_; }
        Retenue(const Retenue&) = delete;
        Retenue& operator=(const Retenue&) = delete;

    private:
        PrompterHote& p_;
        QStringList* avant_;
    };

private:
    std::unique_ptr<Prompter> interieur_;
    QStringList* retenus_ = nullptr;
};

} // namespace veldra::demo
