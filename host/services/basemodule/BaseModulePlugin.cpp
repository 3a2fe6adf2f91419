#include "services/basemodule/BaseModulePlugin.h"
