// SPDX-License-Identifier: MIT
#include <apps/pcdctl/cli/PPipeOptions.h>

#include <apps/common/pipe/PRawCoding.h>
#include <apps/common/pipe/PStreamTarget.h>
#include <apps/common/pipe/PY4mCoding.h>
#include <apps/common/program/PProgramOptions.h>

namespace {

/// Options that have no effect without others, or besides them, are not what the user meant.
PStatus checkPipeTogether(const QCommandLineParser& parser) {
    const bool isUsed = parser.isSet(u"to"_qs);
    for (const QString& option : {u"as"_qs, u"header"_qs, u"chroma"_qs}) {
        if (parser.isSet(option) && !isUsed) {
            return PStatus::failure(
                u"--%1 is for the frames of --to: expected both or none"_qs.arg(option));
        }
    }
    if (isUsed && parser.isSet(u"save"_qs)) {
        return PStatus::failure(
            u"--to and --save cannot be used together: expected one of them"_qs);
    }
    return PStatus::Ok;
}

} // namespace

bool PPipeOptions::takesStandardOutput() const {
    return target == PStreamTarget::standardOutput();
}

PStatus PPipeOptions::read(const QCommandLineParser& parser) {
    const PStatus status = checkPipeTogether(parser);
    if (!status.isOk())
        return status;
    target = parser.value(u"to"_qs);
    const QString form = parser.value(u"as"_qs);
    if (parser.isSet(u"as"_qs) && form != u"raw" && form != u"y4m")
        return PProgramOptions::wrongValue(u"as"_qs, form, u"raw or y4m"_qs);
    coding = form == u"y4m" ? Coding::Y4m : Coding::Raw;
    hasHeader = parser.isSet(u"header"_qs);
    if (hasHeader && coding != Coding::Raw)
        return PStatus::failure(u"--header is for --as raw: y4m has a header of its own"_qs);
    if (!parser.isSet(u"chroma"_qs))
        return PStatus::Ok;
    const QString samples = parser.value(u"chroma"_qs);
    if (samples != u"420" && samples != u"444")
        return PProgramOptions::wrongValue(u"chroma"_qs, samples, u"420 or 444"_qs);
    chroma = samples == u"444" ? PYuvConversion::Chroma::Each : PYuvConversion::Chroma::Quarter;
    if (coding != Coding::Y4m)
        return PStatus::failure(u"--chroma is for --as y4m: raw frames keep their pixels"_qs);
    return PStatus::Ok;
}

std::unique_ptr<PFrameCoding> PPipeOptions::makeCoding(const PCameraIdentity& camera) const {
    if (coding == Coding::Y4m)
        return std::make_unique<PY4mCoding>(chroma);
    return hasHeader ? std::make_unique<PRawCoding>(camera) : std::make_unique<PRawCoding>();
}
