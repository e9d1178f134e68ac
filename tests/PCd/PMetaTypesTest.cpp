// SPDX-License-Identifier: MIT
// A separate program: using a type in a variant also registers it with Qt, and nothing here must do
// that before the type is looked up.
#include <PCd/PMetaTypes.h>

#include <PCd/PEnumeration.h>
#include <PCd/PScanAreaRange.h>
#include <PCd/frame/PDeviceFrame.h>
#include <PCd/frame/PDeviceMode.h>
#include <PCd/frame/PFrameLedger.h>

#include <PCore/PMinMaxRange.h>

#include <support/QtPrinters.h>
#include <support/RowTest.h>

#include <gtest/gtest.h>

namespace {

struct TypeRow {
    const char* typeName;
    const char* name;
    QMetaType type;
};

class MetaType : public RowTest<TypeRow> {};

ROW_TEST(MetaType, is_known_to_qt_by_its_name) {
    registerPCdMetaTypes();
    EXPECT_EQ(QMetaType::fromName(GetParam().typeName), GetParam().type);
}

} // namespace

ROWS(Rows, MetaType,
     TypeRow{"PMinMaxRange<int>", "range_of_int", QMetaType::fromType<PMinMaxRange<int>>()},
     TypeRow{"PMinMaxRange<double>", "range_of_double",
             QMetaType::fromType<PMinMaxRange<double>>()},
     TypeRow{"PEnumeration", "enumeration", QMetaType::fromType<PEnumeration>()},
     TypeRow{"PScanAreaRange", "scan_area_range", QMetaType::fromType<PScanAreaRange>()},
     TypeRow{"PDeviceMode", "mode", QMetaType::fromType<PDeviceMode>()},
     TypeRow{"PDeviceFrame", "frame", QMetaType::fromType<PDeviceFrame>()},
     TypeRow{"PImage", "image", QMetaType::fromType<PImage>()},
     TypeRow{"PFrameLedger", "ledger", QMetaType::fromType<PFrameLedger>()});
