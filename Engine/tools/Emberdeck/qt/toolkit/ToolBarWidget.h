#pragma once

#include <QToolBar>
#include <QToolButton>

#include "shell/Toolbar.h"

// A toolbar of the frame. MenuStyle paints its ground and its gripper, and it its buttons, all by CKRToolbar.
class ToolBarWidget : public QToolBar
{
    Q_OBJECT

public:
    ToolBarWidget(const CKRToolbar& toolbar, QWidget* pParent); // toolbar: borrowed

    const CKRToolbar& Logic() const { return m_Toolbar; }
    EBarSide GetSide() const;

signals:
    void Clicked(int32_t nCommand);
    void Hovered(int32_t nCommand); // 0: left

protected:
    bool event(QEvent* pEvent) override;

private:
    const CKRToolbar& m_Toolbar;
};

// One button of it. Only the keyboard gives it the focus: what is selected elsewhere stays so at a press.
class ToolButton : public QToolButton
{
    Q_OBJECT

public:
    ToolButton(const CKRToolbar& toolbar, int32_t nCommand, QWidget* pParent);
    QSize sizeHint() const override { return QSize(c_nSize, c_nSize); }
    int32_t GetCommand() const { return m_nCommand; }

signals:
    void Hovered(int32_t nCommand); // 0: left

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void enterEvent(QEnterEvent* pEvent) override;
    void leaveEvent(QEvent* pEvent) override;

private:
    static constexpr int c_nSize = 26;

    const CKRToolbar& m_Toolbar;
    int32_t m_nCommand;
};
