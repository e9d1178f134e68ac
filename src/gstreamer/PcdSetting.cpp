// SPDX-License-Identifier: MIT
#include <gstreamer/PcdSetting.h>

#include <gstreamer/PGstSource.h>
#include <gstreamer/PcdSrc.h>

#include <functional>

G_DEFINE_TYPE(PcdSetting, pcd_setting, GST_TYPE_OBJECT)

namespace {

enum SettingProperty : guint { NoSettingProperty, Value, Title, Expected, Unit, Description };

PcdSetting* toSetting(gpointer object) {
    return static_cast<PcdSetting*>(object);
}

/// Calls a function with the source of the element that has the setting, if one has it.
void withSource(PcdSetting* setting, const std::function<void(PGstSource&)>& function) {
    GstObject* const parent = gst_object_get_parent(&setting->parent);
    if (parent == nullptr)
        return;
    function(*reinterpret_cast<PcdSrc*>(parent)->source);
    gst_object_unref(parent);
}

void setSettingProperty(GObject* object, guint id, const GValue* value, GParamSpec* spec) {
    PcdSetting* const setting = toSetting(object);
    if (id != Value) {
        G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, spec);
        return;
    }
    const QString text = QString::fromUtf8(g_value_get_string(value));
    withSource(setting, [&](PGstSource& source) {
        source.apply(QString::fromLatin1(setting->entry->id) + u'=' + text);
    });
}

void getSettingProperty(GObject* object, guint id, GValue* value, GParamSpec* spec) {
    PcdSetting* const setting = toSetting(object);
    QString text;
    switch (id) {
    case Value:
        text = setting->entry->value;
        withSource(setting, [&](PGstSource& source) {
            text = source.settingValue(setting->entry->id).value_or(text);
        });
        break;
    case Title:
        text = setting->entry->title;
        break;
    case Expected:
        text = setting->entry->expected;
        break;
    case Unit:
        text = setting->entry->unit;
        break;
    case Description:
        text = setting->entry->description;
        break;
    default:
        G_OBJECT_WARN_INVALID_PROPERTY_ID(object, id, spec);
    }
    g_value_set_string(value, text.toUtf8().constData());
}

void finalizeSetting(GObject* object) {
    delete toSetting(object)->entry;
    G_OBJECT_CLASS(pcd_setting_parent_class)->finalize(object);
}

void installSettingText(GObjectClass* object, SettingProperty id, const char* name,
                        const char* description, GParamFlags access) {
    g_object_class_install_property(
        object, id,
        g_param_spec_string(name, name, description, "",
                            GParamFlags(access | G_PARAM_STATIC_STRINGS)));
}

} // namespace

static void pcd_setting_class_init(PcdSettingClass* type) {
    GObjectClass* const object = G_OBJECT_CLASS(type);
    object->set_property = setSettingProperty;
    object->get_property = getSettingProperty;
    object->finalize = finalizeSetting;
    installSettingText(object, Value, "value", "The camera's value; setting it does not wait",
                       G_PARAM_READWRITE);
    installSettingText(object, Title, "title", "The name for the user", G_PARAM_READABLE);
    installSettingText(object, Expected, "expected", "The range or the choices, in words",
                       G_PARAM_READABLE);
    installSettingText(object, Unit, "unit", "The unit of a number", G_PARAM_READABLE);
    installSettingText(object, Description, "description", "What the setting does",
                       G_PARAM_READABLE);
}

static void pcd_setting_init(PcdSetting*) {
}

PcdSetting* pcd_setting_new(const PGstCatalogue::Entry& entry) {
    PcdSetting* const setting =
        toSetting(g_object_new(pcd_setting_get_type(), "name", entry.id.constData(), nullptr));
    setting->entry = new PGstCatalogue::Entry(entry);
    return setting;
}
