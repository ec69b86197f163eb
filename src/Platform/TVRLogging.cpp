#include "TVRLogging_p.h"

Q_LOGGING_CATEGORY(lcTovra, "tovra")
