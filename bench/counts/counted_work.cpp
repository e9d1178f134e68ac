// SPDX-License-Identifier: MIT
#include <counts/CountedWork.h>

#include <QCoreApplication>

#include <algorithm>
#include <array>
#include <cstdio>
#include <exception>
#include <string_view>

// Does one kind of work an exact number of times, for counting instructions: under callgrind, the
// difference between two runs is the cost of the work that only one of them did.

namespace {

struct Subject {
    std::string_view name;
    void (*run)(int count);
};

constexpr std::array<Subject, 3> subjects{{
    {"frames", CountedWork::deliverFrames},
    {"property-sets", CountedWork::setProperty},
    {"open-cameras", CountedWork::openCameras},
}};

int complain(const char* problem) {
    std::fprintf(stderr, "counted_work: %s\n", problem);
    return 1;
}

int run(const Subject& subject, const char* text) {
    bool isNumber = false;
    const int count = QByteArray(text).toInt(&isNumber);
    if (!isNumber || count < 1)
        return complain("expected a number from 1 after the name of the work");
    try {
        subject.run(count);
    } catch (const std::exception& error) {
        return complain(error.what());
    }
    return 0;
}

} // namespace

int main(int argc, char** argv) {
    QCoreApplication application(argc, argv);
    const std::string_view name = argc == 3 ? argv[1] : "";
    const auto* const subject = std::find_if(
        subjects.begin(), subjects.end(), [&](const Subject& known) { return known.name == name; });
    if (subject == subjects.end())
        return complain("usage: counted_work frames|property-sets|open-cameras NUMBER");
    return run(*subject, argv[2]);
}
