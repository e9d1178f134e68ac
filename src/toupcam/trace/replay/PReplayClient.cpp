// SPDX-License-Identifier: MIT
#include <toupcam/trace/replay/PReplayClient.h>

#include <sys/mman.h>

namespace {

using Work = std::function<void()>;

/// Memory for a frame, zeros at first; null if the system has none.
class FrameMemory {
public:
    /// Of what is only read, no page takes room.
    enum class Use { Read, Write };

    FrameMemory(std::size_t bytes, Use use)
        : m_bytes(bytes)
        , m_memory(use == Use::Read ? mmap(nullptr, bytes, PROT_READ,
                                           MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0)
                                    : mmap(nullptr, bytes, PROT_READ | PROT_WRITE,
                                           MAP_PRIVATE | MAP_ANONYMOUS, -1, 0)) {}
    ~FrameMemory() {
        if (m_memory != MAP_FAILED)
            munmap(m_memory, m_bytes);
    }
    FrameMemory(const FrameMemory&) = delete;
    FrameMemory& operator=(const FrameMemory&) = delete;

    unsigned char* data() const {
        return m_memory == MAP_FAILED ? nullptr : static_cast<unsigned char*>(m_memory);
    }

private:
    std::size_t m_bytes;
    void* m_memory;
};

using DataCallback = PReplayClient::Registration<PTOUPCAM_DATA_CALLBACK>;

void push(const DataCallback& client, const PReplayCallback& callback, const void* data) {
    client.function(data, callback.header ? &*callback.header : nullptr,
                    callback.isSnapshot ? 1 : 0, client.context);
}

void pushFrame(const DataCallback& client, const PReplayCallback& callback, PReplayFrames& frames) {
    if (!callback.pixels)
        return push(client, callback, nullptr);
    // A header that does not add up says nothing about the memory behind it.
    const bool isKnown = callback.pixels->bytes > 0;
    const std::size_t bytes =
        isKnown ? callback.pixels->bytes
                : std::size_t(callback.header ? callback.header->biSizeImage : 0) + 1;
    const FrameMemory memory(bytes, isKnown ? FrameMemory::Use::Write : FrameMemory::Use::Read);
    if (memory.data() == nullptr)
        return frames.reportLost(bytes);
    if (isKnown)
        frames.read(*callback.pixels, memory.data());
    push(client, callback, memory.data());
}

template <typename Function, typename Run>
Work unlessNull(const PReplayClient::Registration<Function>& client, const Run& run) {
    return client.function == nullptr ? Work() : Work(run);
}

} // namespace

std::function<void()> PReplayClient::prepare(const PReplayCallback& callback,
                                             PReplayFrames& frames) const {
    using Kind = PReplayCallback::Kind;
    if (callback.kind == Kind::HotPlug)
        return unlessNull(hotPlug, [to = hotPlug] { to.function(to.context); });
    const auto found = cameras.find(callback.handle);
    if (found == cameras.end())
        return {};
    const Camera& camera = found->second;
    switch (callback.kind) {
    case Kind::Data:
        return unlessNull(camera.data, [to = camera.data, &callback, &frames] {
            pushFrame(to, callback, frames);
        });
    case Kind::Event:
        return unlessNull(camera.event, [to = camera.event, &callback] {
            to.function(callback.event, to.context);
        });
    case Kind::Exposure:
        return unlessNull(camera.exposure, [to = camera.exposure] { to.function(to.context); });
    case Kind::TempTint:
        return unlessNull(camera.tempTint, [to = camera.tempTint, &callback] {
            to.function(callback.temperature, callback.tint, to.context);
        });
    case Kind::HotPlug:
        break;
    }
    return {};
}
