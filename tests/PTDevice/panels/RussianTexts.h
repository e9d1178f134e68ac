// SPDX-License-Identifier: MIT
#pragma once

#include <QCoreApplication>
#include <QTranslator>

#include <stdexcept>

/// While this object exists the program's language is Russian, with the plugin's translations.
class RussianTexts {
public:
    RussianTexts() {
        if (!m_translator.load(u":/ptdevice_96.qm"_qs))
            throw std::runtime_error("the resource has no translation");
        QCoreApplication::installTranslator(&m_translator);
    }
    ~RussianTexts() { QCoreApplication::removeTranslator(&m_translator); }
    RussianTexts(const RussianTexts&) = delete;
    RussianTexts& operator=(const RussianTexts&) = delete;

private:
    QTranslator m_translator;
};
