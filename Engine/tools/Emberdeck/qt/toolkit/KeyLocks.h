#pragma once

// Which of the keyboard's locks are on.
struct CKeyLocks
{
    bool m_bCaps = false;
    bool m_bNum = false;
    bool m_bScroll = false;
};

// Asks the X server. Without one nobody knows, and all count as off.
CKeyLocks ReadKeyLocks();
