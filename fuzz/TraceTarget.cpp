// SPDX-License-Identifier: MIT
// A trace of the calls of an SDK, as it is read and then replayed by a client that does the same
// again.
#include <FuzzSupport.h>

#include <toupcam/trace/replay/PReplayAnswers.h>
#include <toupcam/trace/replay/PReplayReader.h>

#include <limits>

namespace {

/// All callbacks that were recorded before this line.
void passCallbacks(PReplayAnswers& answers, int line) {
    while (const PReplayCallback* const next = answers.nextCallback()) {
        if (next->line > line)
            return;
        answers.passCallback();
    }
}

void replay(const PReplayRecording& recording) {
    PReplayAnswers answers(recording);
    for (const PReplayCall& call : recording.calls) {
        passCallbacks(answers, call.line);
        Fuzz::require(answers.hasReached(call.line - 1), "every change before a call was made");
        const PReplayCall* const answer = answers.take(call.name, call.handle, call.in);
        Fuzz::require(answer != nullptr && answer->name == call.name && answer->in == call.in,
                      "a call that was recorded is answered by one with its arguments");
        Fuzz::require(!call.isChange || answer == &call, "a change is answered by itself");
    }
    passCallbacks(answers, std::numeric_limits<int>::max());
    answers.finish();
    Fuzz::require(answers.divergences().isEmpty(), "the same calls again are no difference");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        replay(PReplayReader::read(Fuzz::toBytes(data, size)));
    } catch (const PReplayError& error) {
        Fuzz::require(*error.what() != '\0', "an error has a text");
    }
    return 0;
}
