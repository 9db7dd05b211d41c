#pragma once
// The identity of the control as automation hosts bind to it: the type library, class and
// interface GUIDs, and every member of the dispatch interface and of the event interface
// with its dispatch identifier, kind and parameters (all passed by reference). The table
// drives late binding (Veldra::Invoke) and is what an ActiveX build would register.

#include <QString>
#include <QtGlobal>
#include <vector>

namespace veldra::dispatch {

inline constexpr const char* kTypeLibrary = "9E07CCE1-055C-47BC-8D66-163FC10BF735";
inline constexpr const char* kClasse = "4EBA0C95-7D9E-47A4-AFA4-FB7B8B22AAC9";
inline constexpr const char* kInterface = "CD888E92-3A9B-42B8-8404-0A623106770E";
inline constexpr const char* kEvenements = "5874DE52-758A-4E0A-8071-BB62F1E8FE12";

enum class Genre { Variable, Propriete, ProprieteLecture, Methode, Evenement };

struct Parametre {
    const char* nom;
    const char* type; // String, Boolean, Integer, Long, Double, Variant, Recordset...
};

struct Membre {
    qint32 dispid;
    const char* nom;
    Genre genre;
    const char* type; // of a variable or property, of a method's result ("" for none)
    std::vector<Parametre> parametres;
};

// The members of _Veldra in interface order, then the events of __Veldra (DISPIDs 1-13).
const std::vector<Membre>& membres();
const Membre* membre(qint32 dispid);
const Membre* membre(const QString& nom, Genre genre);

} // namespace veldra::dispatch
