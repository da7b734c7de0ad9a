#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "model/MakeOrNull.h"

// What has been done, step by step, and how each step is taken back. The way back is noted before the step, with all
// the memory that it will need, and takes none itself: so a change that can't be done to its end leaves nothing behind.
class CTakeBack
{
public:
    // back() takes the step back that comes next. The reference is to what is kept, and good until the end; the step
    // hands over to it what it takes out.
    template <class TBack>
    TBack& Note(TBack back)
    {
        auto pStep = std::make_unique<CStepOf<TBack>>(std::move(back));
        TBack& kept = pStep->m_Back;
        m_Steps.push_back(std::move(pStep));
        return kept;
    }
    // All of it, from the end. Who listens to the trees may need memory, and goes without.
    void Run() noexcept
    {
        for (; !m_Steps.empty(); m_Steps.pop_back())
            TryAllocating([this] { m_Steps.back()->Run(); });
    }

private:
    struct IStep
    {
        virtual ~IStep() = default;
        virtual void Run() = 0;
    };
    template <class TBack>
    struct CStepOf : IStep
    {
        explicit CStepOf(TBack back) : m_Back(std::move(back)) {}
        void Run() override { m_Back(); }
        TBack m_Back;
    };
    std::vector<std::unique_ptr<IStep>> m_Steps;
};

template <class T>
using COwned = std::vector<std::unique_ptr<T>>;

// Room for so many more. As vectors grow, so that one by one costs no more.
template <class T>
void ReserveMore(COwned<T>& list, size_t nMore)
{
    if (list.capacity() - list.size() < nMore)
        list.reserve(std::max(list.size() + nMore, list.size() * 2));
}

// Objects out of a list, by places that ascend. Takes no memory: taken has as many empty places.
template <class T>
void TakeOut(COwned<T>& list, const std::vector<uint32_t>& places, COwned<T>& taken)
{
    size_t nTo = places.empty() ? list.size() : places.front();
    for (size_t nFrom = nTo, i = 0; nFrom < list.size(); ++nFrom)
    {
        if (i < places.size() && places[i] == nFrom)
            taken[i++] = std::move(list[nFrom]);
        else
            list[nTo++] = std::move(list[nFrom]);
    }
    list.resize(nTo);
}

// Back to these places, where they stand in the end. The list has room for them.
template <class T>
void PutIn(COwned<T>& list, const std::vector<uint32_t>& places, COwned<T>& taken)
{
    size_t nFrom = list.size();
    list.resize(nFrom + places.size());
    size_t nTo = list.size();
    for (size_t i = places.size(); i-- > 0;)
    {
        while (nTo - 1 > places[i])
            list[--nTo] = std::move(list[--nFrom]);
        list[--nTo] = std::move(taken[i]);
    }
}

// Ways back. Each holds what the step took out, or what stood there before it.

template <class T>
struct CPutBack // objects that were taken out
{
    COwned<T>& m_List;
    std::vector<uint32_t> m_Places;
    COwned<T> m_Taken;
    void operator()() { PutIn(m_List, m_Places, m_Taken); }
};

template <class T>
struct CTakeOutAgain // objects that were put in, or else still are here
{
    COwned<T>& m_List;
    std::vector<uint32_t> m_Places;
    COwned<T> m_Taken;
    void operator()() { TakeOut(m_List, m_Places, m_Taken); }
};

template <class T>
struct CSetBack
{
    T& m_Where;
    T m_Old;
    void operator()() { std::swap(m_Where, m_Old); }
};

// A range of a list in another order, and back: place i of the range gets what stood at m_Order[i].
template <class T>
struct CReorder
{
    COwned<T>& m_List;
    size_t m_nFirst;
    std::vector<size_t> m_Order;
    std::vector<size_t> m_Back;
    COwned<T> m_Scratch; // as long as the range

    void Do(const std::vector<size_t>& order)
    {
        for (size_t i = 0; i < order.size(); ++i)
            m_Scratch[i] = std::move(m_List[m_nFirst + order[i]]);
        std::move(m_Scratch.begin(), m_Scratch.end(), m_List.begin() + static_cast<std::ptrdiff_t>(m_nFirst));
    }
    void Do() { Do(m_Order); }
    void operator()() { Do(m_Back); }
};
