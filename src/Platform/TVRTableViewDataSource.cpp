#include "TVRTableViewDataSource.h"

TVRTableViewDataSource::~TVRTableViewDataSource() = default;

int TVRTableViewDataSource::numberOfSectionsInTableView(TVRTableView *)
{
    return 1;
}
