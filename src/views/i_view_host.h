// A view's way to the frame.
#pragma once

class IViewHost
{
public:
    virtual ~IViewHost() = default;
    virtual void SendCommand(int command) = 0;
    virtual bool Offers(int /*command*/) const { return true; } // false: a menu leaves it out
    virtual void UpdateTitle() = 0;
    virtual void RebuildSoftKeys() = 0;
    virtual void ShowDaily(int returnView) = 0; // go to the daily view, with the view to return to
    virtual void PressSoftKey(int key) = 0;     // 112 the first, 113 the last
};
