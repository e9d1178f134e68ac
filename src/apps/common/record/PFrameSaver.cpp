// SPDX-License-Identifier: MIT
#include <apps/common/record/PFrameSaver.h>

#include <utility>

namespace {

constexpr int writerCount = 2;

} // namespace

PFrameSaver::PFrameSaver(PFileSequence files, SaveFrame saveFrame, std::size_t byteLimit)
    : m_queue([files = std::move(files), save = std::move(saveFrame)](
                  const PDeviceFrame& frame,
                  quint64 number) { return save(files.path(number), frame); },
              writerCount, std::make_shared<PWorkBudget>(byteLimit)) {
}

bool PFrameSaver::takeFrame(const PDeviceFrame& frame, Kind kind) {
    return kind != Kind::Live || m_queue.push(frame);
}

PFrameSaver::State PFrameSaver::state() const {
    const PFrameWriteQueue::State state = m_queue.state();
    return {state.written, state.waiting, state.failed + state.refused, state.error};
}
