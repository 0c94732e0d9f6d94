#pragma once

// What a host program calls and registers.

class CMultiDocTemplate;
class CStorageDocTemplate;
class CWnd;

extern CStorageDocTemplate& vldvSurfaceTemplate;
extern CMultiDocTemplate& vldv3DTemplate;
extern CMultiDocTemplate& vldv3DCloudTemplate;
extern CMultiDocTemplate& vldvVideoCaptureTemplate;

/// Shows the open dialog and opens what was chosen; several files become one document when "open.merged" is on.
/// \param options  of the dialog: bit 0 a preview
void VldvOpenDocument(int options);
/// The same in quick-view frames.
void VldvOpenQuickView();
/// Margins and paper of printed pages, shared by all views.
void VldvPageSetup();
/// The list of open windows, to activate one or close several.
void VldvSelectView();
/// Offers all modified documents to be saved. \return false when the user cancelled
bool VldvSaveAllDocuments(CWnd* parent);
