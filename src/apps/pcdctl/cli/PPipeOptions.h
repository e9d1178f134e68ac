// SPDX-License-Identifier: MIT
#pragma once

#include <apps/common/camera/PCameraIdentity.h>
#include <apps/common/pipe/PFrameCoding.h>
#include <apps/common/pipe/PYuvConversion.h>

#include <PCore/PStatus.h>

#include <QCommandLineParser>

#include <memory>

/// The options that pass the frames of `stream` on to another program. A value; any thread.
struct PPipeOptions {
    /// The form of the frames.
    enum class Coding { Raw, Y4m };

    QString target; ///< "-" is standard output, else a file; empty: frames are not passed on
    Coding coding = Coding::Raw;
    bool hasHeader = false; ///< raw: a line of JSON precedes the frames
    PYuvConversion::Chroma chroma = PYuvConversion::Chroma::Quarter; ///< y4m

    bool isUsed() const { return !target.isEmpty(); }
    /// True if standard output is for frames, and nothing else.
    bool takesStandardOutput() const;

    /// Takes these options from a parser that has them all. Fails with what is wrong and what was
    /// expected.
    PStatus read(const QCommandLineParser& parser);

    /// The coding of the frames of this camera.
    std::unique_ptr<PFrameCoding> makeCoding(const PCameraIdentity& camera) const;
};
