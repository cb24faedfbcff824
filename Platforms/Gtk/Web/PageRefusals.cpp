#include "Gtk/Web/PageRefusals.h"

namespace tavo::gtk {
namespace {

// Handled at once and without a widget: an alert in a loop costs the page its time and nobody else.
gboolean answerDialog(WebKitWebView* /*view*/, WebKitScriptDialog* dialog, gpointer /*data*/) {
  switch (webkit_script_dialog_get_dialog_type(dialog)) {
    case WEBKIT_SCRIPT_DIALOG_CONFIRM:
      webkit_script_dialog_confirm_set_confirmed(dialog, FALSE);
      break;
    case WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM:
      // "Yes, leave": a page cannot hold on to its view.
      webkit_script_dialog_confirm_set_confirmed(dialog, TRUE);
      break;
    case WEBKIT_SCRIPT_DIALOG_ALERT:
    case WEBKIT_SCRIPT_DIALOG_PROMPT:
      break;
  }
  return TRUE;
}

gboolean denyPermission(WebKitWebView* /*view*/, WebKitPermissionRequest* request,
                        gpointer /*data*/) {
  webkit_permission_request_deny(request);
  return TRUE;
}

gboolean answerPermissionState(WebKitWebView* /*view*/, WebKitPermissionStateQuery* query,
                               gpointer /*data*/) {
  webkit_permission_state_query_finish(query, WEBKIT_PERMISSION_STATE_DENIED);
  return TRUE;
}

gboolean cancelFileChooser(WebKitWebView* /*view*/, WebKitFileChooserRequest* request,
                           gpointer /*data*/) {
  webkit_file_chooser_request_cancel(request);
  return TRUE;
}

gboolean cancelColorChooser(WebKitWebView* /*view*/, WebKitColorChooserRequest* request,
                            gpointer /*data*/) {
  webkit_color_chooser_request_cancel(request);
  return TRUE;
}

gboolean cancelAuthentication(WebKitWebView* /*view*/, WebKitAuthenticationRequest* request,
                              gpointer /*data*/) {
  webkit_authentication_request_cancel(request);
  return TRUE;
}

gboolean suppressMenu(WebKitWebView* /*view*/, WebKitContextMenu* /*menu*/,
                      WebKitHitTestResult* /*hit*/, gpointer /*data*/) {
  return TRUE;
}

gboolean suppressPrint(WebKitWebView* /*view*/, WebKitPrintOperation* /*operation*/,
                       gpointer /*data*/) {
  return TRUE;
}

gboolean suppressFullScreen(WebKitWebView* /*view*/, gpointer /*data*/) { return TRUE; }

gboolean suppressNotification(WebKitWebView* /*view*/, WebKitNotification* /*notification*/,
                              gpointer /*data*/) {
  return TRUE;
}

void cancelDownload(WebKitNetworkSession* /*session*/, WebKitDownload* download,
                    gpointer /*data*/) {
  webkit_download_cancel(download);
}

}  // namespace

void refuseQuestionsOfPage(WebKitWebView* view, SignalConnections& connections) {
  connections.connect(view, "script-dialog", answerDialog, nullptr);
  connections.connect(view, "permission-request", denyPermission, nullptr);
  connections.connect(view, "query-permission-state", answerPermissionState, nullptr);
  connections.connect(view, "run-file-chooser", cancelFileChooser, nullptr);
  connections.connect(view, "run-color-chooser", cancelColorChooser, nullptr);
  connections.connect(view, "authenticate", cancelAuthentication, nullptr);
  connections.connect(view, "context-menu", suppressMenu, nullptr);
  connections.connect(view, "print", suppressPrint, nullptr);
  connections.connect(view, "enter-fullscreen", suppressFullScreen, nullptr);
  connections.connect(view, "show-notification", suppressNotification, nullptr);
}

void refuseDownloads(WebKitNetworkSession* session, SignalConnections& connections) {
  connections.connect(session, "download-started", cancelDownload, nullptr);
}

}  // namespace tavo::gtk
