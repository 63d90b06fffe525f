#include "shell/frame_layout.h"
#include "settings/fonts.h"

#include <algorithm>

CFrameLayout CFrameLayout::Of(QSize client, int location, int titleWidth, int keyHeight)
{
    const int width = std::max(client.width(), 0), height = std::max(client.height(), 0);
    const int keysTop = std::max(height - keyHeight, 0);
    const int across = std::min(titleWidth, width), down = std::min(titleWidth, keysTop);
    CFrameLayout layout;
    layout.Keys = QRect(0, keysTop, width, height - keysTop);
    layout.View = QRect(0, 0, width, keysTop);
    switch (location) {
    case kTitleLeft:
        layout.Title = QRect(0, 0, across, keysTop);
        layout.View.setLeft(across);
        break;
    case kTitleTop:
        layout.Title = QRect(0, 0, width, down);
        layout.View.setTop(down);
        break;
    case kTitleRight:
        layout.Title = QRect(width - across, 0, across, keysTop);
        layout.View.setWidth(width - across);
        break;
    case kTitleBottom:
        layout.Title = QRect(0, keysTop - down, width, down);
        layout.View.setHeight(keysTop - down);
        break;
    default:
        break;
    }
    return layout;
}

int TitleStripWidth(int sizeIndex)
{
    return std::clamp(sizeIndex, 0, kTitlebarSizeCount - 1) + kMinTitlebarSize;
}
