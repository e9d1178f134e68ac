// SPDX-License-Identifier: MIT
#include <PCore/PFaultStack.h>

#include <atomic>
#include <csignal>
#include <cstddef>

#include <sys/mman.h>
#include <unistd.h>

__thread bool PFaultStack::s_isGiven = false;

namespace {

constexpr std::size_t usableBytes = 65536; // also for registers of 64 bytes that signals save

std::atomic<bool> areWanted{false};

bool hasOne() noexcept {
    stack_t present{};
    return ::sigaltstack(nullptr, &present) != 0 || (present.ss_flags & SS_DISABLE) == 0;
}

/// Memory for the stack of a thread, in use until that thread ends.
class OwnStack {
public:
    OwnStack() noexcept {
        void* const mapped = ::mmap(nullptr, size(), PROT_READ | PROT_WRITE,
                                    MAP_PRIVATE | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
        if (mapped == MAP_FAILED)
            return;
        m_mapped = static_cast<char*>(mapped);
        // Below the stack: a handler that needs more must not write into other memory.
        ::mprotect(m_mapped, guardBytes(), PROT_NONE);
        use(0);
    }
    ~OwnStack() {
        if (m_mapped == nullptr)
            return;
        use(SS_DISABLE);
        ::munmap(m_mapped, size());
    }
    OwnStack(const OwnStack&) = delete;
    OwnStack& operator=(const OwnStack&) = delete;

private:
    static std::size_t guardBytes() noexcept { return std::size_t(::sysconf(_SC_PAGESIZE)); }
    static std::size_t size() noexcept { return guardBytes() + usableBytes; }

    void use(int flags) const noexcept {
        stack_t stack{};
        stack.ss_sp = m_mapped + guardBytes();
        stack.ss_size = usableBytes;
        stack.ss_flags = flags;
        ::sigaltstack(&stack, nullptr);
    }

    char* m_mapped = nullptr;
};

} // namespace

void PFaultStack::want() noexcept {
    areWanted = true;
}

void PFaultStack::give() noexcept {
    if (!areWanted)
        return;
    s_isGiven = true;
    if (!hasOne()) // a sanitizer gives threads theirs
        static thread_local const OwnStack untilEnd;
}
