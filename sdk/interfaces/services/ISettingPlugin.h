#pragma once

#include "interfaces/ReservedOperation.h"

#include <QtPlugin>

class ISettingsObject;
class IShortcutSetting;

/** The host's settings plug-in. The positions of the operations are fixed. Thread: GUI thread only. */
class ISettingPlugin {
public:
    BIGIMGPREVIEW_RESERVED_OPERATION(1)

    /** 2: the settings; owned by the plug-in; null when there are none. */
    virtual ISettingsObject *settingsObject() = 0;

    BIGIMGPREVIEW_RESERVED_OPERATION(3)

    /** 4: the keyboard shortcuts; owned by the plug-in; null when there are none. */
    virtual IShortcutSetting *shortcutSetting() = 0;

protected:
    ~ISettingPlugin() = default;
};

Q_DECLARE_INTERFACE(ISettingPlugin, "Tessaro.Plugin.ISettingPlugin/1.0")
