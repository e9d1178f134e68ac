// SPDX-License-Identifier: MIT
#include <gstreamer/camera/PGstCatalogue.h>

#include <gstreamer/GstFixture.h>
#include <gstreamer/camera/PGstHost.h>

#include <PCd/device/PDevice.h>
#include <PCd/device/PDeviceManager.h>
#include <PCd/property/PDeviceProperty.h>

namespace {

class PGstCatalogueTest : public GstFixture {};

} // namespace

TEST_F(PGstCatalogueTest, has_each_property_in_its_order_with_text_and_range) {
    ASSERT_TRUE(PGstHost::instance().prepare(u"sim"_qs, scene()).isOk());
    PDevice& device = *PGstHost::instance().manager().devices().first();
    ASSERT_TRUE(device.link().isOk());
    const PGstCatalogue catalogue = PGstCatalogue::of(device);
    const QList<PDeviceProperty*> properties = device.supportProperties();
    ASSERT_EQ(catalogue.entries.size(), properties.size());
    for (qsizetype i = 0; i < properties.size(); ++i) {
        EXPECT_EQ(catalogue.entries[i].id, properties[i]->id());
        EXPECT_EQ(catalogue.entries[i].title, properties[i]->title());
    }
    const PGstCatalogue::Entry binning = PGstCatalogue::describe(*device.getProperty("binning"));
    EXPECT_EQ(binning.value, u"No binning"_qs);
    EXPECT_TRUE(binning.expected.contains(u"\"Add 2x2\"")) << binning.expected.toStdString();
}
