// SPDX-License-Identifier: MIT
#include <PCore/call/PCallRecord.h>

#include <PCore/call/PCallText.h>

bool PCallRecord::mark() {
    Word kind = m_kind.load(std::memory_order_acquire);
    // Fails if the thread goes on at this moment: its own writes always win.
    return kind != none && m_kind.compare_exchange_strong(kind, kind | marked);
}

bool PCallRecord::write(PCallText& text) const {
    const Word kind = m_kind.load(std::memory_order_acquire) & ~marked;
    if (kind == none)
        return false;
    const auto* const call = reinterpret_cast<const Kind*>(kind);
    text << call->name << "(";
    call->writeArguments(*this, text);
    text << ")";
    // Arguments are kept before the call begins: they are this call's if it is still there.
    return (m_kind.load(std::memory_order_acquire) & ~marked) == kind;
}
