// SPDX-License-Identifier: MIT
#include <PDip/PBufferPool.h>

#include <PDip/PImageSizeLimit.h>

#include <sys/mman.h>

#include <algorithm>
#include <mutex>
#include <new>
#include <utility>
#include <vector>

#if defined(__SANITIZE_ADDRESS__)
#define PCD_ADDRESS_SANITIZER
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define PCD_ADDRESS_SANITIZER
#endif
#endif
#ifdef PCD_ADDRESS_SANITIZER
#include <sanitizer/asan_interface.h>
#endif

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t pageSize = 4096; // the smallest size class; pages may be larger
constexpr std::size_t hugePageSize = std::size_t(2) << 20; // of x86-64, and of ARM with small ones
constexpr std::size_t roundedBy = 16;                      // at most this part of a size
constexpr std::size_t idleCountLimit = 64;

/// The size class: up to a sixteenth more than requested, so that frames of similar size share
/// buffers. Pages that are never touched cost no memory.
std::size_t roundedSize(std::size_t size) {
    std::size_t step = pageSize;
    while (step * 2 * roundedBy <= size)
        step *= 2;
    return (size + step - 1) / step * step;
}

/// The address sanitizer does not track memory that is mapped directly: these functions mark the
/// bytes that must not be accessed, so that overruns of images are detected as they are on the
/// heap.
void allowAccess([[maybe_unused]] unsigned char* memory, [[maybe_unused]] std::size_t allowed,
                 [[maybe_unused]] std::size_t size) {
#ifdef PCD_ADDRESS_SANITIZER
    ASAN_UNPOISON_MEMORY_REGION(memory, size);
    ASAN_POISON_MEMORY_REGION(memory + allowed, size - allowed);
#endif
}

/// A separate mapping instead of heap memory: after the first large block is freed, the C library
/// serves such sizes from the heap, which it may not return to the system.
class Mapping {
public:
    Mapping() = default;
    explicit Mapping(std::size_t size)
        : m_size(size) {
        void* memory =
            mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        m_memory = memory == MAP_FAILED ? nullptr : static_cast<unsigned char*>(memory);
        if (m_memory)
            requestHugePages();
    }
    /// Takes ownership of what release() returned.
    Mapping(unsigned char* memory, std::size_t size)
        : m_memory(memory)
        , m_size(size) {}
    Mapping(Mapping&& other) noexcept
        : m_memory(other.release())
        , m_size(other.m_size) {}
    Mapping& operator=(Mapping&& other) noexcept {
        std::swap(m_memory, other.m_memory);
        std::swap(m_size, other.m_size);
        return *this;
    }
    ~Mapping() {
        if (!m_memory)
            return;
        allowAccess(m_memory, m_size, m_size);
        munmap(m_memory, m_size);
    }

    unsigned char* memory() const { return m_memory; }
    std::size_t size() const { return m_size; }
    unsigned char* release() noexcept { return std::exchange(m_memory, nullptr); }

private:
    /// Where the system has pages of 2 MiB, fresh memory for a frame of 60 MB costs some 30 page
    /// faults instead of 15,000. Not for the end, which images of a similar size may not touch: a
    /// page of that size is resident as a whole. Without such pages everything works as well.
    void requestHugePages() {
        const std::size_t sure = (m_size - m_size / roundedBy) / hugePageSize * hugePageSize;
        if (sure > 0)
            madvise(m_memory, sure, MADV_HUGEPAGE);
    }

    unsigned char* m_memory = nullptr;
    std::size_t m_size = 0;
};

struct Idle {
    Mapping mapping;
    Clock::time_point since;
};

/// Collects mappings under the lock, to be unmapped after it: unmapping 60 MB takes milliseconds,
/// and a frame thread that needs a buffer must not wait for that. Allocates nothing, and costs
/// nothing while it is empty, as it nearly always is.
class Leaving {
public:
    Leaving() = default;
    Leaving(const Leaving&) = delete;
    Leaving& operator=(const Leaving&) = delete;
    ~Leaving() {
        for (std::size_t i = 0; i < m_count; ++i)
            Mapping(m_memories[i], m_sizes[i]); // unmapped by its destructor
    }

    void add(Mapping mapping) {
        m_sizes[m_count] = mapping.size();
        m_memories[m_count++] = mapping.release();
    }

private:
    static constexpr std::size_t most = idleCountLimit + 1; // all idle ones, and one being returned
    unsigned char* m_memories[most];
    std::size_t m_sizes[most];
    std::size_t m_count = 0;
};

} // namespace

struct PBufferPool::Core {
    Core(std::size_t limit, std::chrono::milliseconds time)
        : idleLimit(limit)
        , idleTime(time) {
        idle.reserve(idleCountLimit); // give() must not throw
    }

    Mapping take(std::size_t size);
    void give(Mapping mapping);
    void trim();
    void countAllocation(std::size_t size);

    // The following functions are called with the lock held.
    Mapping reuse(std::size_t size);
    void removeOldest(Leaving& leaving);
    void removeExpired(Leaving& leaving);

    mutable std::mutex mutex; // images are created and destroyed on any thread
    std::size_t idleLimit;
    std::size_t useLimit = noLimit;
    const std::chrono::milliseconds idleTime;
    std::vector<Idle> idle; // the longest idle first
    Statistics counts;
};

/// The newest buffer that fits: its pages are most likely still in the caches.
Mapping PBufferPool::Core::reuse(std::size_t size) {
    const auto found = std::find_if(idle.rbegin(), idle.rend(), [size](const Idle& waiting) {
        return waiting.mapping.size() == size;
    });
    if (found == idle.rend())
        return {};
    Mapping mapping = std::move(found->mapping);
    idle.erase(std::next(found).base());
    counts.idleBytes -= size;
    counts.usedBytes += size;
    ++counts.reuses;
    return mapping;
}

void PBufferPool::Core::removeOldest(Leaving& leaving) {
    counts.idleBytes -= idle.front().mapping.size();
    leaving.add(std::move(idle.front().mapping));
    idle.erase(idle.begin());
}

void PBufferPool::Core::removeExpired(Leaving& leaving) {
    const auto now = Clock::now();
    while (!idle.empty() && now - idle.front().since >= idleTime)
        removeOldest(leaving);
}

void PBufferPool::Core::countAllocation(std::size_t size) {
    const std::lock_guard lock(mutex);
    ++counts.allocations;
    counts.usedBytes += size;
}

Mapping PBufferPool::Core::take(std::size_t size) {
    Leaving leaving; // declared before the lock, to be destroyed after it
    {
        const std::lock_guard lock(mutex);
        if (size > useLimit || counts.usedBytes > useLimit - size)
            return {};
        Mapping mapping = reuse(size);
        removeExpired(leaving);
        if (mapping.memory())
            return mapping;
    }
    Mapping fresh(size);
    if (!fresh.memory()) {
        trim(); // idle buffers of other sizes may be just what is missing
        fresh = Mapping(size);
    }
    if (fresh.memory())
        countAllocation(size);
    return fresh;
}

void PBufferPool::Core::give(Mapping mapping) {
    allowAccess(mapping.memory(), 0, mapping.size());
    Leaving leaving;
    const std::lock_guard lock(mutex);
    const std::size_t size = mapping.size();
    counts.usedBytes -= size;
    removeExpired(leaving);
    if (size > idleLimit) {
        leaving.add(std::move(mapping));
        return;
    }
    while (counts.idleBytes > idleLimit - size || idle.size() == idleCountLimit)
        removeOldest(leaving);
    idle.push_back({std::move(mapping), Clock::now()});
    counts.idleBytes += size;
}

void PBufferPool::Core::trim() {
    Leaving leaving;
    const std::lock_guard lock(mutex);
    while (!idle.empty())
        removeOldest(leaving);
}

PBufferPool::PBufferPool(std::size_t idleLimit, std::chrono::milliseconds idleTime)
    : m_core(std::make_shared<Core>(idleLimit, idleTime)) {
}

PBufferPool::~PBufferPool() {
    {
        const std::lock_guard lock(m_core->mutex);
        m_core->idleLimit = 0;
    }
    m_core->trim();
}

PBufferPool& PBufferPool::instance() {
    // Never destroyed: images in static variables are destroyed during exit(), in any order.
    static PBufferPool* const pool = new PBufferPool(std::size_t(512) << 20);
    return *pool;
}

PBufferPool::Buffer PBufferPool::acquire(std::size_t size) {
    if (size == 0 || size >= PImageSizeLimit)
        return nullptr;
    Mapping mapping = m_core->take(roundedSize(size));
    if (!mapping.memory())
        return nullptr;
    allowAccess(mapping.memory(), size, mapping.size());
    const auto giveBack = [core = m_core, rounded = mapping.size()](unsigned char* memory) {
        core->give(Mapping(memory, rounded));
    };
    try {
        return Buffer(mapping.release(), giveBack);
    } catch (const std::bad_alloc&) {
        return nullptr; // giveBack() has run
    }
}

void PBufferPool::setUseLimit(std::size_t bytes) {
    const std::lock_guard lock(m_core->mutex);
    m_core->useLimit = bytes;
}

void PBufferPool::trim() {
    m_core->trim();
}

PBufferPool::Statistics PBufferPool::statistics() const {
    const std::lock_guard lock(m_core->mutex);
    return m_core->counts;
}
