// SPDX-License-Identifier: MIT
#include <PCdPlugins/PTDevice/PTPropRoi.h>

#include <PCdPlugins/PTDevice/PTLog.h>

#include <PCd/property/PReadWatch.h>

namespace {

constexpr unsigned unknownSize = 0xFFFFFFFF;

QRect toRect(unsigned x, unsigned y, unsigned w, unsigned h) {
    QRect rect;
    rect.setCoords(int(x), int(y), int(x + w - 1), int(y + h - 1));
    return rect;
}

PScanAreaRange toRange(int w, int h) {
    PScanAreaRange range;
    range.bounds.setCoords(0, 0, w - 1, h - 1);
    range.minimumWidth = 4;
    range.minimumHeight = 4;
    range.widthStep = 4;
    range.heightStep = 4;
    range.offsetStep = 0;
    return range;
}

} // namespace

PTPropRoi::PTPropRoi(Toupcam_t* handle, const QByteArray& id, const QString& title)
    : PDevicePropertyScanArea(id, title, PCD::DevicePropertyType::ScanArea)
    , m_handle(handle) {
}

void PTPropRoi::followMode() {
    const PReadWatch watch;
    updateValueFromDevice(false);
    if (!watch.hasFailed())
        return;
    setValueInner(QVariant()); // what was reported is the region of the old mode
    setUnreadValueInner(QVariant());
    emit valueChanged(valueInner());
}

bool PTPropRoi::trySetValueToDevice(QRect region) {
    const auto width = unsigned(region.right()) - unsigned(region.left()) + 1;
    const auto height = unsigned(region.bottom()) - unsigned(region.top()) + 1;
    return Toupcam_put_Roi(m_handle, unsigned(region.left()), unsigned(region.top()), width,
                           height) != 0;
}

QRect PTPropRoi::tryGetValueFromDevice() {
    unsigned x = 0;
    unsigned y = 0;
    unsigned w = 0;
    unsigned h = 0;
    Toupcam_get_Roi(m_handle, &x, &y, &w, &h);
    return toRect(x, y, w, h);
}

PScanAreaRange PTPropRoi::tryGetRangeFromDevice() {
    unsigned n = unknownSize;
    int w = -1;
    int h = -1;
    const bool answered = checkError(Toupcam_get_eSize(m_handle, &n));
    if (answered && n == unknownSize) {
        PT_LOG() << "ScanAreaRange:" << n;
        return PScanAreaRange();
    }
    PT_OP(Toupcam_get_Resolution(m_handle, n, &w, &h));
    return toRange(w, h);
}

#include "moc_PTPropRoi.cpp"
