#include "TVRDocumentManagerDelegate.h"

TVRDocumentManagerDelegate::~TVRDocumentManagerDelegate() = default;

void TVRDocumentManagerDelegate::managerDidFinishWithSuccess(TVRDocumentManager *, bool)
{
}

void TVRDocumentManagerDelegate::managerFailedWithError(TVRDocumentManager *, const TVRError &)
{
}
