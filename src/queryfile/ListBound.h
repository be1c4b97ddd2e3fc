#pragma once

#include "foundation/FileBounds.h"
