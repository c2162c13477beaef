#pragma once

#include "menupage.h"

/// The SETUP page: shows and edits the addresses of the Ethernet interfaces.
class SetupMenu : public MenuPage
{
public:
    /// Fills the fields.
    SetupMenu();
    void enter() override {}
    void show() override;
    void press(int key) override;

private:
    bool isEditing() const { return m_position >= 0; }
    void edit(int key);
    void type(char digit);
    void moveRight();
    void moveLeft();
    void placeCursor() const;

    int m_position = -1; ///< of the cursor: 16 x field + character; -1 while not editing
};
