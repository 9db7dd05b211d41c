#include "prompter_hote.h"

#include "session_sans_ecran.h"

namespace veldra::demo {

PrompterHote::PrompterHote(std::unique_ptr<Prompter> interieur)
    : interieur_(std::move(interieur)) {}

int PrompterHote::message(const QString& texte, int style, const QString& titre) {
    if (!retenus_)
        return interieur_->message(texte, style, titre);
    retenus_->append(texte);
    return reponseSansEcran(style);
}

} // namespace veldra::demo
