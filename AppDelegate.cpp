#include "AppDelegate.h"
