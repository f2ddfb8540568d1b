#pragma once

#include "KivCarto/Map.h"
#include "KivUtility/_ptr_t.h"

#include <QWidget>

/// The central map area. It shows the current map's layers; drawing of the
/// data itself comes with the data-source library.
class MapView : public QWidget
{
    Q_OBJECT
public:
    explicit MapView(QWidget* parent = nullptr);

    void setMap(const KivUtility::_ptr_t<KivCarto::Map>& map);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    KivUtility::_ptr_t<KivCarto::Map> m_map;
};
