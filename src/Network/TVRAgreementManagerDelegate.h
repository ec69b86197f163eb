// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#ifndef TVRAGREEMENTMANAGERDELEGATE_H
#define TVRAGREEMENTMANAGERDELEGATE_H

#include "tovra_export.h"

//! \brief The delegate type of TVRAgreementManager. It has no methods yet.
class TOVRA_EXPORT TVRAgreementManagerDelegate
{
public:
    virtual ~TVRAgreementManagerDelegate();
};

#endif
