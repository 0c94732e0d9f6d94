#pragma once
#include "vldv_api.h"

// What a host program calls and registers.

class CMultiDocTemplate;
class CStorageDocTemplate;
class CWnd;

VLDV_API extern CStorageDocTemplate& vldvSurfaceTemplate;
VLDV_API extern CMultiDocTemplate& vldv3DTemplate;
VLDV_API extern CMultiDocTemplate& vldv3DCloudTemplate;
VLDV_API extern CMultiDocTemplate& vldvVideoCaptureTemplate;

/// Shows the open dialog and opens what was chosen; several files become one document when "open.merged" is on.
/// \param options  of the dialog: bit 0 a preview
VLDV_API void VldvOpenDocument(int options);
/// Opens what is chosen in quick-view frames.
VLDV_API void VldvOpenQuickView();
/// Margins and paper of printed pages, shared by all views.
VLDV_API void VldvPageSetup();
/// The list of open windows, to activate one or close several.
VLDV_API void VldvSelectView();
/// Offers all modified documents to be saved. \return false when the user cancelled
VLDV_API bool VldvSaveAllDocuments(CWnd* parent);
