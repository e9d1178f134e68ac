// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QtGlobal>

#include <mutex>

/// While this object exists, it collects what any thread logs through Qt, instead of it being
/// shown. One at a time.
class QtMessages {
public:
    QtMessages() {
        const std::lock_guard lock(mutex());
        kept().clear();
        m_before = qInstallMessageHandler(keep);
    }
    ~QtMessages() { qInstallMessageHandler(m_before); }
    QtMessages(const QtMessages&) = delete;
    QtMessages& operator=(const QtMessages&) = delete;

    QStringList texts() const {
        const std::lock_guard lock(mutex());
        return kept();
    }

private:
    static void keep(QtMsgType, const QMessageLogContext&, const QString& text) {
        const std::lock_guard lock(mutex());
        kept().append(text);
    }
    static std::mutex& mutex() {
        static std::mutex one;
        return one;
    }
    static QStringList& kept() {
        static QStringList texts;
        return texts;
    }

    QtMessageHandler m_before;
};
