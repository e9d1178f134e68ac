// SPDX-License-Identifier: MIT
#include <PLog/PLogFilter.h>

#include <optional>

namespace {

std::optional<PLogLevel> levelNamed(const QString& name) {
    static const QHash<QString, PLogLevel> levels{
        {u"debug"_qs, PLogLevel::Debug},     {u"info"_qs, PLogLevel::Info},
        {u"warning"_qs, PLogLevel::Warning}, {u"error"_qs, PLogLevel::Error},
        {u"off"_qs, PLogLevel::Off},
    };
    const auto found = levels.find(name);
    return found == levels.end() ? std::nullopt : std::optional(*found);
}

PStatus badWord(const QString& word, QLatin1String why) {
    return PStatus::failure(u"log filter: \"%1\" %2: expected a level (debug, info, "
                            "warning, error, off), then source=level, separated "
                            "by commas"_qs.arg(word, why));
}

} // namespace

PStatus PLogFilter::parse(const QString& text) {
    PLogFilter parsed;
    parsed.m_text = text;
    const QStringList words = text.split(u',');
    for (qsizetype i = 0; i < words.size(); ++i) {
        if (const PStatus status = parsed.addWord(words[i].trimmed(), i == 0); !status.isOk())
            return status;
    }
    *this = parsed;
    return PStatus::Ok;
}

PStatus PLogFilter::addWord(const QString& word, bool isFirst) {
    const qsizetype equals = word.lastIndexOf(u'=');
    const QString source = word.left(qMax(equals, qsizetype(0))).trimmed();
    const auto level = levelNamed(word.mid(equals + 1).trimmed());
    if (!level)
        return badWord(word, QLatin1String("has no known level"));
    if (equals < 0 && !isFirst)
        return badWord(word, QLatin1String("is a level for all sources, which must come first"));
    if (equals >= 0 && (source.isEmpty() || m_sources.contains(source)))
        return badWord(word, QLatin1String("names no source, or one that was named before"));
    if (equals < 0)
        m_level = *level;
    else
        m_sources.insert(source, *level);
    return PStatus::Ok;
}

bool PLogFilter::passes(const QString& source, PLogLevel level) const {
    return level != PLogLevel::Off && level >= m_sources.value(source, m_level);
}
