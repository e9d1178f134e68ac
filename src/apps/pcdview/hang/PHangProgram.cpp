// SPDX-License-Identifier: MIT
#include <apps/pcdview/hang/PHangProgram.h>

#include <apps/pcdview/hang/PHangMessage.h>
#include <apps/pcdview/hang/PHangWindow.h>

#include <QApplication>
#include <QSocketNotifier>

#include <csignal>

#include <sys/socket.h>
#include <unistd.h>

namespace {

/// None at the end of the input.
std::optional<PCallWatchdog::Call> receiveCall() {
    QByteArray message(PHangMessage::mostBytes, Qt::Uninitialized);
    const ssize_t size = ::recv(STDIN_FILENO, message.data(), std::size_t(message.size()), 0);
    return size > 0 ? PHangMessage::read(message.left(size)) : std::nullopt;
}

} // namespace

int PHangProgram::run(qint64 viewer, std::chrono::milliseconds endingTime) {
    PHangWindow window(endingTime);
    QObject::connect(&window, &PHangWindow::endRequested, &window, [viewer] { endViewer(viewer); });
    QObject::connect(&window, &QDialog::finished, &window, [] { QApplication::quit(); });
    QSocketNotifier input(STDIN_FILENO, QSocketNotifier::Read);
    QObject::connect(&input, &QSocketNotifier::activated, &window, [&window] {
        const auto call = receiveCall();
        if (!call)
            return QApplication::quit();
        window.setCall(*call);
        window.show();
    });
    return QApplication::exec();
}

void PHangProgram::endViewer(qint64 viewer) {
    if (::getppid() == pid_t(viewer))
        ::kill(pid_t(viewer), SIGTERM);
}
