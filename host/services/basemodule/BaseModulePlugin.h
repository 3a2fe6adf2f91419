#pragma once

#include "services/basemodule/BaseModule.h"

/** Entry point of the base module as a Qt plug-in. */
class BaseModulePlugin : public basemodule::BaseModule {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID "KOR.Core.IPlugin/1.0" FILE "basemodule.json")
};
