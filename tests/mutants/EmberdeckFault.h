#pragma once

#include <cstdlib>
#include <utility>

// What planted sources stand on (see Planter.cpp). Every fault of a build is compiled in; the environment variable
// EMBERDECK_FAULT names the one that is on, by its number. Without it the program is the clean one.

// Never a constant expression: what has to be known while compiling can't carry a fault, and must not compile.
inline bool EmberdeckFault(int nFault)
{
    static const int s_nChosen = []
    {
        const char* pszChosen = std::getenv("EMBERDECK_FAULT");
        return pszChosen ? std::atoi(pszChosen) : 0;
    }();
    return nFault == s_nChosen;
}

// The right side of "a += b" or "a -= b", with its sign turned when the fault is on.
template <class T>
auto EmberdeckTurnedSign(int nFault, T value)
{
    return EmberdeckFault(nFault) ? -value : +value; // a bool becomes an int, or it would have no sign
}

// An operator that a fault replaces. "a < b" is written "a < CEmberdeckOperator<SLess, SGreater>{17} < b": the same
// operator stands on both sides of the stand-in, so that precedence and order are those of the clean source, nobody
// has to find where the operands begin and end, and each operand is evaluated once.
template <class TClean, class TFaulty>
struct CEmberdeckOperator
{
    int m_nFault;
};

template <class TLeft, class TClean, class TFaulty>
struct CEmberdeckLeft
{
    TLeft&& m_Left;
    int m_nFault;
};

#define EMBERDECK_OPERATOR(name, op)                                                                         \
    struct CEmberdeck##name                                                                                  \
    {                                                                                                        \
        template <class TLeft, class TRight>                                                                 \
        static auto Do(TLeft&& left, TRight&& right)                                                         \
        {                                                                                                    \
            return std::forward<TLeft>(left) op std::forward<TRight>(right);                                 \
        }                                                                                                    \
    };                                                                                                       \
    template <class TLeft, class TClean, class TFaulty>                                                      \
    CEmberdeckLeft<TLeft, TClean, TFaulty> operator op(TLeft&& left,                                         \
                                                       CEmberdeckOperator<TClean, TFaulty> stand)            \
    {                                                                                                        \
        return {std::forward<TLeft>(left), stand.m_nFault};                                                  \
    }                                                                                                        \
    template <class TLeft, class TClean, class TFaulty, class TRight>                                        \
    auto operator op(CEmberdeckLeft<TLeft, TClean, TFaulty> left, TRight&& right)                            \
    {                                                                                                        \
        return EmberdeckFault(left.m_nFault)                                                                 \
                   ? TFaulty::Do(std::forward<TLeft>(left.m_Left), std::forward<TRight>(right))              \
                   : TClean::Do(std::forward<TLeft>(left.m_Left), std::forward<TRight>(right));              \
    }
EMBERDECK_OPERATOR(Less, <)
EMBERDECK_OPERATOR(LessEqual, <=)
EMBERDECK_OPERATOR(Greater, >)
EMBERDECK_OPERATOR(GreaterEqual, >=)
EMBERDECK_OPERATOR(Equal, ==)
EMBERDECK_OPERATOR(NotEqual, !=)
EMBERDECK_OPERATOR(Plus, +)
EMBERDECK_OPERATOR(Minus, -)
EMBERDECK_OPERATOR(Times, *)
EMBERDECK_OPERATOR(Over, /)
#undef EMBERDECK_OPERATOR
