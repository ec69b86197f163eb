#include "TVRAgreementManagerDelegate.h"

TVRAgreementManagerDelegate::~TVRAgreementManagerDelegate() = default;
