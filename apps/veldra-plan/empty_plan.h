#pragma once
// An empty plan: every table of a plan and their drawing order, no feature, no raster.
// The control draws the enclosure itself when it opens a new plan.

#include <QString>

namespace veldra::plantool {

// Error number when createEmptyPlan finds the plan already there (the platform's "file
// already exists").
inline constexpr qint32 PlanExistant = 58;

// Writes "<folder>/<name>.gpkg", creating the folder if needed, and returns its path.
// Never replaces a file: Erreur (PlanExistant) when the plan exists; Erreur for a bad name
// or a folder that cannot be written.
QString createEmptyPlan(const QString& folder, const QString& name);

} // namespace veldra::plantool
