// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

#include <optional>

/// Which product a USB device is: the numbers of its vendor and product. A value; any thread.
struct PUsbId {
    quint16 vendor = 0;
    quint16 product = 0;

    /// The id in "VENDOR:PRODUCT", each with four hexadecimal digits. Nothing if the text has
    /// another form.
    static std::optional<PUsbId> parse(const QString& text);
    /// As "VENDOR:PRODUCT".
    QString toText() const;
    /// Four hexadecimal digits, as udev writes them.
    QString vendorText() const;
    QString productText() const;

    friend bool operator==(const PUsbId& a, const PUsbId& b) {
        return a.vendor == b.vendor && a.product == b.product;
    }
};
