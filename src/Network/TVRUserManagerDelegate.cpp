#include "TVRUserManagerDelegate.h"

TVRUserManagerDelegate::~TVRUserManagerDelegate() = default;
