// Keeps GTK's file panels on the screen.
#pragma once

#include <QObject>

/// Qt shows GTK's panels on the desktops that are made with GTK. GTK makes them as large as it
/// likes and offers no other way to size them than its own functions, which are in this process
/// then.
class GtkPanels : public QObject
{
    Q_OBJECT

public:
    /// Watches all panels of the application.
    void start();

    bool eventFilter(QObject *watched, QEvent *event) override;
};
