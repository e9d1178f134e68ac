// SPDX-License-Identifier: MIT
#include <apps/pcdctl/completion/PFileCandidates.h>

#include <apps/common/ome/POmeStackWriter.h>
#include <apps/common/picture/PPictureFile.h>
#include <apps/common/zarr/PZarrWriter.h>

namespace {

/// What was typed up to the first full stop of the file's name.
QString withoutEnding(const QString& typed) {
    const qsizetype folder = typed.lastIndexOf(u'/') + 1;
    const qsizetype stop = typed.indexOf(u'.', folder);
    return stop < 0 ? typed : typed.left(stop);
}

PCandidates withEndings(const QString& typed, const QString& number, const QStringList& endings,
                        const QString& description) {
    const QString name = withoutEnding(typed);
    PCandidates candidates;
    if (name.isEmpty() || name.endsWith(u'/'))
        return candidates;
    for (const QString& ending : endings)
        candidates.append({name + number + ending, description});
    return candidates;
}

} // namespace

PCandidates PFileCandidates::forOutput(PCtlOptions::Command command, const QString& typed) {
    if (command != PCtlOptions::Command::Record)
        return withEndings(typed, {}, PPictureFile::endings(), u"a picture"_qs);
    const PCandidates series = forSeries(typed);
    if (typed.contains(u'#'))
        return series;
    return withEndings(typed, {}, POmeStackWriter::endings(), u"one file with all frames"_qs) +
           withEndings(typed, {}, PZarrWriter::endings(), u"one folder with all frames"_qs) +
           series;
}

PCandidates PFileCandidates::forSeries(const QString& typed) {
    const QString number = typed.contains(u'#') ? QString() : u"-####"_qs;
    return withEndings(typed, number, PPictureFile::endings(), u"a file for each frame"_qs);
}
