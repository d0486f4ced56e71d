// The notifications of a dialog, posted on the default notification center with the dialog as object.
#pragma once

#include <QString>

inline const QString RQAlertViewWillShowNotification = QStringLiteral("RQAlertViewWillShowNotification");
inline const QString RQAlertViewDidShowNotification = QStringLiteral("RQAlertViewDidShowNotification");
inline const QString RQAlertViewCancelNotification = QStringLiteral("RQAlertViewCancelNotification");
inline const QString RQAlertViewDestructiveNotification =
    QStringLiteral("RQAlertViewDestructiveNotification");
inline const QString RQAlertViewWillDismissNotification =
    QStringLiteral("RQAlertViewWillDismissNotification");
inline const QString RQAlertViewDidDismissNotification = QStringLiteral("RQAlertViewDidDismissNotification");
inline const QString RQAlertViewDidDismissAfterCancelNotification =
    QStringLiteral("RQAlertViewDidDismissAfterCancelNotification");
inline const QString RQAlertViewDidDismissAfterDestructiveNotification =
    QStringLiteral("RQAlertViewDidDismissAfterDestructiveNotification");

// userInfo: "title" (QString) and "index" (qulonglong).
inline const QString RQAlertViewActionNotification = QStringLiteral("RQAlertViewActionNotification");
inline const QString RQAlertViewDidDismissAfterActionNotification =
    QStringLiteral("RQAlertViewDidDismissAfterActionNotification");

// Posted inside the animation. userInfo: "duration" (double, seconds).
inline const QString RQAlertViewShowAnimationsNotification =
    QStringLiteral("RQAlertViewShowAnimationsNotification");
inline const QString RQAlertViewDismissAnimationsNotification =
    QStringLiteral("RQAlertViewDismissAnimationsNotification");
