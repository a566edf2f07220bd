// The host state: the eight exported variables and nothing beside them. Who writes which is told
// where each is declared, in vantiro/runtime.h.
#pragma once

#include <jni.h>

#include "vantiro/runtime.h"
