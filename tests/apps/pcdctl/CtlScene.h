// SPDX-License-Identifier: MIT
#pragma once

#include <QJsonArray>
#include <QJsonObject>
#include <QString>

/// A scene for the simulated SDK: small, fast cameras. One thread.
class CtlScene {
public:
    /// Adds a camera of model "Small" with this id and serial number; its modes are 320x240 and
    /// 160x120, its frames show pure red, green and blue patches on black.
    CtlScene& addCamera(const QString& id = u"cam-1"_qs, const QString& serial = u"S0001"_qs);
    /// Changes a value of the camera added last.
    CtlScene& set(const QString& key, const QJsonValue& value);
    /// Gives the camera added last only this resolution.
    CtlScene& setResolution(int width, int height, double fps);
    /// Adds a step to the fault plan.
    CtlScene& addFault(const QJsonObject& step);
    CtlScene& addFaults(const QList<QJsonObject>& steps);

    /// Writes it into a file and returns the file's name.
    QString writeTo(const QString& path) const;

private:
    QJsonArray m_cameras;
    QJsonArray m_faults;
};

/// Ids and fault steps that many tests use.
inline const QString smallCameraId = u"Small-S0001"_qs;
QJsonObject unplugAfter(int frames);
QJsonObject stepAt(int ms, const QString& action);
QJsonObject failing(const QString& function);
/// Steps after which the first look at an opened camera finds that it no longer answers.
QList<QJsonObject> silence();
/// Calls of the function do not return, after letting `skip` pass.
QJsonObject hanging(const QString& function, int skip = 0);
