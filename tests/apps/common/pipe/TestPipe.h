// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

#include <gtest/gtest.h>

#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

/// A named pipe in the file system, and its reader.
class TestPipe {
public:
    explicit TestPipe(const QByteArray& path)
        : m_path(path) {
        EXPECT_EQ(::mkfifo(path.constData(), 0600), 0);
    }
    ~TestPipe() { closeReader(); }
    TestPipe(const TestPipe&) = delete;
    TestPipe& operator=(const TestPipe&) = delete;

    void openReader() {
        m_reader = ::open(m_path.constData(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
        EXPECT_GE(m_reader, 0);
    }
    void closeReader() {
        if (m_reader >= 0)
            ::close(std::exchange(m_reader, -1));
    }
    /// What is in the pipe now, up to this number of bytes.
    QByteArray read(int most) const {
        QByteArray bytes(most, '\0');
        const ssize_t size = ::read(m_reader, bytes.data(), std::size_t(most));
        return bytes.left(size > 0 ? int(size) : 0);
    }

private:
    const QByteArray m_path;
    int m_reader = -1;
};
