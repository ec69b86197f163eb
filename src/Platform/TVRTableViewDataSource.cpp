// SPDX-FileCopyrightText: 2026 The Tovra authors
// SPDX-License-Identifier: MIT

#include "TVRTableViewDataSource.h"

TVRTableViewDataSource::~TVRTableViewDataSource() = default;

int TVRTableViewDataSource::numberOfSectionsInTableView(TVRTableView *)
{
    return 1;
}
