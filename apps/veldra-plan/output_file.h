#pragma once
// Where the tool's files go. A file is first written under a stage name beside its final
// name and renamed over it at the end, so that a failed run leaves the previous file whole.

#include <QString>

namespace veldra::plantool {

// Creates `folder` and its parents if needed; returns its absolute, clean path. Erreur
// (AccesRefuse) when it cannot be created or is not a folder.
QString prepareFolder(const QString& folder);

// Erreur (ArgumentsIncorrects) unless `name` can be a file name: not empty, no separator,
// not "." or "..".
void checkFileName(const QString& name);

class StagedFile {
public:
    // `stageSuffix` is the stage's extension without the dot ("gpkg" keeps GDAL from
    // warning about a GeoPackage of another name); any leftover stage is removed.
    StagedFile(QString finalPath, const QString& stageSuffix);
    ~StagedFile(); // removes the stage unless committed
    StagedFile(const StagedFile&) = delete;
    StagedFile& operator=(const StagedFile&) = delete;

    const QString& stagePath() const { return stage_; }
    const QString& finalPath() const { return final_; }
    // Replaces the final file by the stage; Erreur (AccesRefuse) when the rename fails.
    void commit();

private:
    QString final_;
    QString stage_;
    bool committed_ = false;
};

} // namespace veldra::plantool
