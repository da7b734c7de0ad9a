// What is no number keeps its dialog open, with the text to be typed over.

#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>

#include "qt/toolkit/QtPrompts.h"

TEST(NumberEntry, StaysOpenUntilItHasANumber)
{
    QtPrompts prompts;
    QStringList steps;
    QTimer::singleShot(0,
                       [&]
                       {
                           auto* pDialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
                           ASSERT_NE(nullptr, pDialog);
                           auto* pEdit = pDialog->findChild<QLineEdit*>();
                           QTimer::singleShot(0,
                                              [&, pDialog]
                                              {
                                                  if (auto* pBox = qobject_cast<QMessageBox*>(
                                                          QApplication::activeModalWidget()))
                                                  {
                                                      steps << pBox->text()
                                                            << (pDialog->isVisible() ? "open" : "closed");
                                                      pBox->accept();
                                                  }
                                              });
                           pEdit->setText(QStringLiteral("12x"));
                           pDialog->accept();
                           steps << pEdit->selectedText();
                           pEdit->setText(QStringLiteral("12"));
                           pDialog->accept();
                       });
    CNumberEntry request;
    request.m_sCaption = "Length";
    request.m_nMin = 1;
    request.m_nMax = 20;
    int32_t nValue = 3;
    EXPECT_TRUE(prompts.EnterNumber(request, nValue));
    EXPECT_EQ(12, nValue);
    EXPECT_EQ((QStringList{"Please enter a whole number between 1 and 20.", "open", "12x"}), steps);
}
