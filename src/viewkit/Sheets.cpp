#include "viewkit/Item.h"

#include <QDialog>
#include <QPointer>
#include <memory>

namespace viewkit
{

Item sheetWhen(QWidget *owner, Predicate isShown, std::function<QDialog *(QWidget *owner)> make)
{
    const auto sheet = std::make_shared<QPointer<QDialog>>();
    return {.rules = {[=, isShown = std::move(isShown), make = std::move(make)] {
                const bool wanted = isShown();
                if (wanted == !sheet->isNull())
                    return;
                if (wanted) {
                    *sheet = make(owner);
                    // Open it later: the owner may not be on the screen yet.
                    const auto open = [sheet, made = sheet->data()] {
                        if (*sheet == made)
                            made->open();
                    };
                    QMetaObject::invokeMethod(*sheet, open, Qt::QueuedConnection);
                } else {
                    (*sheet)->hide();
                    (*sheet)->deleteLater();
                    sheet->clear();
                }
            }}};
}

} // namespace viewkit
