#pragma once

#include <QIcon>
#include <QString>
#include <QStringList>

#include <Vk_DocQuery/Export.h>

namespace Vk_DocQuery {

/// The pictures that records name by GetIconKey and GetIconKeyAsAccPerson. A key is a short text in
/// lower case and is compared exactly; an empty one is no picture. There are three lists:
///
///   picker  the window that picks objects: thePickerPictureKeys
///   panel   the lists of the dialog: the same but for thePictureKeysThatFailInThePanel
///   shared  the browser of report forms: the picker's and thePictureKeysOfTheBrowser
///
/// What a host appends stands behind these in all three. A key that is not in the list of the
/// window makes the window fail that would show it, with a text that names the key and the record.
/// So a stream that names "acc_stream_ofr" or "acc_stream_rfm" can be seen in the picker, and makes
/// the dialog fail as soon as it has been picked or a query file with it is opened: name another
/// picture, or append one of your own.
// clang-format off
inline constexpr const char16_t *thePickerPictureKeys[] = {
    u"folder", u"zzz", u"tree_expander", u"empty", u"updir", u"updir_points", u"doc", u"docs",
    u"info", u"worker_old", u"worker", u"formal_boss", u"period", u"org", u"orgs", u"doc_stream",
    u"doc_streams", u"year", u"quartal", u"man_purple", u"period_other", u"doc_tr2", u"doc_blank",
    u"doc_archived", u"doc_delivered", u"doc_completed", u"orgs2", u"sub_orgs", u"sub_orgs_closed",
    u"sub_org", u"period_fc", u"period_other_fc", u"quartal_fc2", u"quartal_fc", u"halfyear_fc",
    u"perreg_fc_old", u"halfyear", u"perreg_old", u"perreg", u"perreg_dc", u"perreg_fc",
    u"otherdocs", u"quartal_dc", u"period_dc", u"period_other_dc", u"halfyear_dc",
    u"perreg_dc_old", u"period_letter_dc", u"period_letter_fc", u"period_letter", u"ks_sending",
    u"ks_checked_ok", u"ks_checked_warnings", u"ks_checking", u"ks_delivered",
    u"ks_checked_errors", u"ks_waiting_send", u"ks_waiting_checking", u"ks_sent_old", u"ks_sent",
    u"otherdocs_dc", u"otherdocs_fc", u"cons_stream", u"cons_reps", u"doc_cons", u"docs_group",
    u"legal_agent", u"sort_desc", u"sort_asc", u"cour_wing", u"cour_sending", u"cour_conf",
    u"cour_letter", u"cour_imns", u"cour_rejected", u"cour_error", u"mailbox", u"doc_error",
    u"mailbox_inactive", u"f_ticket", u"f_inworking", u"f_coursent", u"f_courconf", u"f_errors",
    u"profile", u"cour_prot", u"acc_stream_closed", u"docdisk_archived", u"docdisk_completed",
    u"docdisk_delivered", u"docdisk_tr", u"docdisk", u"briefcase", u"briefcase2",
    u"epis_completed", u"epis", u"epis_delivered", u"epis_imns", u"epis_tr", u"cour_answer",
    u"acc_stream", u"acc_stream_pfr", u"acc_stream_rs", u"acc_stream_ind", u"acc_stream_alc",
    u"acc_stream_tech", u"acc_stream_reg", u"acc_stream_ofr", u"acc_stream_hunthub", u"branch",
    u"unknown", u"docdisk_completed_tr", u"docdisk_delivered_tr", u"epis_completed_tr",
    u"epis_delivered_tr", u"epis_imns_tr", u"docdisk_archived_tr", u"doc_archived_tr",
    u"doc_completed_tr", u"doc_delivered_tr", u"doc_cons_tr", u"doc_tr", u"pfrmaster_blank_old",
    u"pfrmaster_completed_old", u"pfrmaster_delivered_old", u"pfrmaster_old",
    u"pfrmaster_delivered_tr_old", u"pfrmaster_completed_tr_old", u"pfrmaster_tr_old",
    u"pfrmaster_blank", u"pfrmaster_tr", u"pfrmaster_completed", u"pfrmaster_completed_tr",
    u"pfrmaster_delivered", u"pfrmaster_delivered_tr", u"pfrmaster", u"pfr_send",
    u"pfrmaster_archived", u"pfrmaster_archived_tr", u"fss_send", u"pfrworkers_inf",
    u"pfrworkers_5", u"pfrworkers_10", u"pfrworkers_20", u"pfrworkers_50", u"pfrworkers_200",
    u"pfrworkers_500", u"accfolder_rs", u"accfolder_imns", u"accfolder_ind", u"accfolder_pfr",
    u"accfolder_alc", u"accfolder_tech", u"accfolder_reg", u"accfolder_hunthub", u"fss_error",
    u"fss_ticket_received", u"fss_delivered", u"fss_sent", u"warrant", u"checkufa",
    u"perm_eff_rights", u"otherdocs_u3", u"otherdocs_u6", u"otherdocs_u9", u"period_u3",
    u"period_u6", u"period_u9", u"perreg_u3", u"perreg_u6", u"perreg_u9", u"period_other_u3",
    u"period_other_u6", u"period_other_u9", u"p5_u3", u"p5_u6", u"p5_u9", u"p10_u3", u"p10_u6",
    u"p10_u9", u"p20_u3", u"p20_u6", u"p20_u9", u"p50_u3", u"p50_u6", u"p50_u9", u"p200_u3",
    u"p200_u6", u"p200_u9", u"p500_u3", u"p500_u6", u"p500_u9", u"p_inf_u3", u"p_inf_u6",
    u"p_inf_u9", u"quartal_u3", u"quartal_u6", u"quartal_u9", u"quartal_uinf", u"otherdocs_uinf",
    u"period_uinf", u"perreg_uinf", u"period_other_uinf", u"p5_uinf", u"p10_uinf", u"p20_uinf",
    u"p50_uinf", u"p200_uinf", u"p500_uinf", u"p_inf_uinf", u"acc_stream_rfm",
};
// clang-format on

/// Keys of the picker's list that the panel's lacks.
inline constexpr const char16_t *thePictureKeysThatFailInThePanel[] = {u"acc_stream_ofr",
                                                                       u"acc_stream_rfm"};

/// Keys of the shared list that the picker's lacks.
inline constexpr const char16_t *thePictureKeysOfTheBrowser[] = {u"galka_green"};

/// The keys of the lists as they are now, in their order, with those that were appended.
/// May be called from the thread of the windows only, like AppendPicture.
VK_DOCQUERY_EXPORT QStringList PanelPictureKeys();
VK_DOCQUERY_EXPORT QStringList PickerPictureKeys();
VK_DOCQUERY_EXPORT QStringList SharedPictureKeys();

/// Appends a picture to the three lists, to the end of the process. It is shown 16 by 16 pixels
/// large, and as many times finer as the screen is: an icon that holds larger forms, or an SVG
/// file, stays sharp there. Windows that are up know it at once. The library keeps a copy.
///
/// Raises KeyAlreadyPresent for a key that stands in any of the lists, which then stay as they are;
/// InvalidArgument for an empty key and for an icon without a picture, such as that of a file that
/// cannot be read; and what every call on another thread, or without a display, raises.
VK_DOCQUERY_EXPORT void AppendPicture(const QString &aKey, const QIcon &aPicture);

}  // namespace Vk_DocQuery
