#pragma once

#include "platform/image/ImageFiles.h"
