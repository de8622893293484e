// The stand-ins as a module.
#include "automation/server.h"

#include "stores/store.h"

AUTOMATION_SERVER(stores::Classes())
