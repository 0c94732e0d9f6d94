// The record must stand on its own: modules include nothing else.
#include "plugins/PluginRequest.h"
