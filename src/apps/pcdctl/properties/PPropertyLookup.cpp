// SPDX-License-Identifier: MIT
#include <apps/pcdctl/properties/PPropertyLookup.h>

#include <PCd/device/PDevice.h>
#include <PCd/property/PDeviceProperty.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace {

/// Letters to insert, delete or exchange to make one word of the other: V. I. Levenshtein, "Binary
/// codes capable of correcting deletions, insertions, and reversals", 1966.
int distance(const QString& a, const QString& b) {
    std::vector<int> row(std::size_t(b.size()) + 1);
    std::iota(row.begin(), row.end(), 0);
    for (qsizetype i = 0; i < a.size(); ++i) {
        int diagonal = std::exchange(row[0], int(i) + 1);
        for (qsizetype j = 0; j < b.size(); ++j) {
            int& above = row[std::size_t(j) + 1];
            const int exchanged = diagonal + int(a[i] != b[j]);
            diagonal = above;
            above = std::min({above + 1, row[std::size_t(j)] + 1, exchanged});
        }
    }
    return row.back();
}

bool isNear(const QString& id, const QString& requested) {
    constexpr int enough = 2;
    if (requested.size() > 2 && (id.startsWith(requested) || requested.startsWith(id)))
        return true;
    return requested.size() > enough && requested.size() < 100 && distance(id, requested) <= enough;
}

QString unknown(PDevice& device, const QString& requested) {
    QStringList all;
    QStringList near;
    for (const PDeviceProperty* property : device.supportProperties()) {
        all.append(QString::fromLatin1(property->id()));
        if (isNear(all.last(), requested.toLower()))
            near.append(all.last());
    }
    const QString hint =
        near.isEmpty() ? QString() : u" did you mean %1?"_qs.arg(near.join(u" or "_qs));
    return u"the camera has no property \"%1\":%2 expected one of %3"_qs.arg(
        requested.left(100), hint, all.join(u", "_qs));
}

} // namespace

PDeviceProperty* PPropertyLookup::find(PDevice& device, const QString& id, PCtlOutcome& outcome) {
    device.supportProperties();
    PDeviceProperty* const property = device.getProperty(id.toUtf8());
    if (device.supportProperties().isEmpty())
        outcome = PCtlOutcome::failed(u"the camera does not answer: it reports no property"_qs);
    else if (property == nullptr)
        outcome = PCtlOutcome::wrongUsage(unknown(device, id));
    return property;
}

QList<PDeviceProperty*> PPropertyLookup::findAll(PDevice& device, const QStringList& ids,
                                                 PCtlOutcome& outcome) {
    QList<PDeviceProperty*> found;
    for (const QString& id : ids) {
        PDeviceProperty* const property = find(device, id, outcome);
        if (property == nullptr)
            return {};
        if (!found.contains(property))
            found.append(property);
    }
    return found;
}
