// SPDX-License-Identifier: MIT
#include <apps/common/ome/POmeNotes.h>

#include <apps/common/camera/PSettingNames.h>
#include <apps/common/metadata/PSettingTexts.h>

#include <utility>

namespace {

// Automatic gain may change several times a second, for days.
constexpr qsizetype mostChanges = 1000;

void appendTally(PPictureMetadata& notes, const PRecordTally& tally) {
    const std::pair<const char*, quint64> counts[]{{"wanted", tally.wanted},
                                                   {"written", tally.written},
                                                   {"failed", tally.failed},
                                                   {"refused", tally.refused},
                                                   {"not taken", tally.notTaken}};
    for (const auto& [name, count] : counts)
        notes.append({u"Recording "_qs + QLatin1String(name), QString::number(count)});
}

/// The frames that the camera took and the recorder did not receive; empty if there are none. It
/// received all others, even those dropped before the device's thread.
QString lostFrames(const PFrameLedger& ledger) {
    QStringList parts;
    for (const PFrameOutcome outcome : {PFrameOutcome::LostInCamera, PFrameOutcome::BadDepth,
                                        PFrameOutcome::BadSize, PFrameOutcome::NoMemory}) {
        if (ledger.count(outcome) > 0)
            parts.append(u"%1 %2"_qs.arg(QString::number(ledger.count(outcome)),
                                         PFrameLedger::title(outcome)));
    }
    return parts.isEmpty() ? QString()
                           : u"frames of the camera are missing: "_qs + parts.join(u", "_qs);
}

QString completeText(const PRecordEnd& end) {
    const QString lost = end.ledger ? lostFrames(*end.ledger) : QString();
    if (end.failure.isEmpty())
        return lost.isEmpty() ? u"yes"_qs : u"yes, but "_qs + lost;
    return u"no: "_qs + end.failure + (lost.isEmpty() ? QString() : u"; "_qs + lost);
}

void appendLedger(PPictureMetadata& notes, const PFrameLedger& ledger) {
    notes.append({u"Camera frames produced"_qs, QString::number(ledger.produced)});
    for (const PFrameOutcome outcome : PFrameLedger::allOutcomes()) {
        notes.append({u"Camera frames "_qs + QString::fromLatin1(PFrameLedger::key(outcome)),
                      QString::number(ledger.count(outcome))});
    }
    notes.append({u"Camera frames waiting"_qs, QString::number(ledger.waiting)});
}

} // namespace

POmeNotes::POmeNotes(PCameraIdentity camera)
    : m_camera(std::move(camera)) {
}

PPictureMetadata POmeNotes::ofCamera(const PFrameStamp& first) const {
    return pictureMetadata(m_camera, &first);
}

PPictureMetadata POmeNotes::unfinished(const PFrameStamp& first, const QString& times) const {
    PPictureMetadata notes = ofCamera(first);
    notes.append(
        {u"Complete"_qs,
         u"no: the recording was cut short, and the times of its frames are in %1"_qs.arg(times)});
    return notes;
}

void POmeNotes::add(const PFrameStamp& stamp) {
    if (m_first.isEmpty())
        m_first = ofCamera(stamp);
    addChanges(stamp);
    addNumber(stamp.sequence);
}

/// A device creates a new settings object at every change, and only then.
void POmeNotes::addChanges(const PFrameStamp& stamp) {
    const auto before = std::exchange(m_settings, stamp.settings);
    if (!before || before == stamp.settings)
        return;
    const PFrameExposure exposure = PFrameExposure::of(*stamp.settings, {});
    // The time itself is written with every frame.
    if (exposure.automatic != PFrameExposure::of(*before, {}).automatic)
        addChange(u"Exposure"_qs, stamp, exposure.timeText());
    const PPictureMetadata known = PSettingTexts::of(*before);
    for (const auto& text : PSettingTexts::of(*stamp.settings)) {
        if (!known.contains(text))
            addChange(text.first, stamp, text.second);
    }
}

void POmeNotes::addChange(const QString& key, const PFrameStamp& stamp, const QString& text) {
    if (m_changes.size() < mostChanges)
        m_changes.append({u"%1 from frame %2"_qs.arg(key, QString::number(stamp.sequence)), text});
    else
        ++m_moreChanges;
}

void POmeNotes::addNumber(quint64 sequence) {
    if (!m_numbers.empty() && m_numbers.back().second + 1 == sequence)
        m_numbers.back().second = sequence;
    else
        m_numbers.emplace_back(sequence, sequence);
}

/// "1-20, 22, 30-31".
QString POmeNotes::numbers() const {
    QStringList runs;
    for (const auto& [first, last] : m_numbers) {
        runs.append(first == last ? QString::number(first)
                                  : u"%1-%2"_qs.arg(QString::number(first), QString::number(last)));
    }
    return runs.join(u", "_qs);
}

PPictureMetadata POmeNotes::finished(const PRecordEnd& end) const {
    PPictureMetadata notes = m_first + m_changes;
    if (m_moreChanges > 0)
        notes.append({u"Changes of settings not listed"_qs, QString::number(m_moreChanges)});
    notes.append({u"Complete"_qs, completeText(end)});
    notes.append({u"Frames"_qs, numbers()});
    appendTally(notes, end.tally);
    if (end.ledger)
        appendLedger(notes, *end.ledger);
    return notes;
}
