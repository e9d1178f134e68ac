// SPDX-License-Identifier: MIT
#include <apps/pcdctl/completion/PCompletionLine.h>

namespace {

/// Stands for the last word where the words before it are parsed.
const QString placeholder = u"?"_qs;

/// "camera" of "--camera", "-c" or "camera"; empty if there is no such option with a value.
QString toOptionWithValue(QString word) {
    while (word.startsWith(u'-'))
        word.remove(0, 1);
    const PCtlSyntax::OptionSyntax* const syntax = PCtlSyntax::findOption(word);
    const bool takesValue = syntax != nullptr && !syntax->option.valueName().isEmpty();
    return takesValue ? syntax->option.names().last() : QString();
}

} // namespace

PCompletionLine::PCompletionLine(const QStringList& words)
    : m_typed(words.isEmpty() ? QString() : words.last()) {
    const QStringList before = words.mid(0, words.size() - 1);
    PCtlSyntax::addOptions(m_parser, nullptr);
    // Errors are expected in a line that is not complete; what was understood is used.
    m_parser.parse(QStringList{u"pcdctl"_qs} + before + QStringList{placeholder});
    m_arguments = m_parser.positionalArguments();
    const bool isValue = m_arguments.isEmpty() || m_arguments.last() != placeholder;
    if (!isValue)
        m_arguments.removeLast();
    if (!m_arguments.isEmpty())
        m_command = PCtlSyntax::findCommand(m_arguments.first());
    m_part = m_arguments.isEmpty() ? Part::Command : Part::Argument;
    m_arguments = m_arguments.mid(1);
    if (isValue)
        splitAt(0, toOptionWithValue(before.value(before.size() - 1)));
    else
        readLastWord(!before.contains(u"--"_qs));
}

void PCompletionLine::readLastWord(bool mayBeOption) {
    if (!mayBeOption || !m_typed.startsWith(u'-'))
        return;
    m_part = Part::Option;
    const qsizetype sign = m_typed.indexOf(u'=');
    const QString shortOption = toOptionWithValue(m_typed.mid(1, 1));
    if (m_typed.startsWith(u"--"_qs) && sign > 0)
        splitAt(sign + 1, toOptionWithValue(m_typed.left(sign)));
    else if (m_typed.size() > 2 && !shortOption.isEmpty())
        splitAt(2, shortOption);
}

void PCompletionLine::splitAt(qsizetype length, const QString& option) {
    m_part = Part::OptionValue;
    m_option = option;
    m_start = m_typed.left(length);
    m_typed = m_typed.mid(length);
}

PCtlOptions PCompletionLine::cameraOptions() const {
    PCtlOptions options;
    options.read(m_parser, {}); // where it fails, the rest of the line is wrong too
    return options;
}
