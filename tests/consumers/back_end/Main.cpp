// A client of the back-end beside it, which may come from another compiler, and so may the library.
#include "BackEnd.hpp"

#include <foundation/vexadata/VexaData.hpp>

#include <iostream>
#include <numeric>

using namespace foundation::vexadata;

namespace {

int faults = 0;

void expect(bool holds, const char* what) {
    if (!holds) {
        ++faults;
        std::cerr << "does not hold: " << what << "\n";
    }
}

void valuesCross() {
    ArrayFactory factory;
    TypedArray<double> row = factory.createArray<double>({1, 3}, {1.0, 2.0, 3.0});
    TypedArray<double> copy = row;
    copy[0][2] = 5.0;
    expect(row[0][2] == 3.0 && copy[0][2] == 5.0, "a copy is written alone");
    expect(std::accumulate(copy.begin(), copy.end(), 0.0) == 8.0, "iterators walk all elements");
    for (double& value : row)
        value *= 2.0;
    expect(row[2] == 6.0 && row != copy, "iterators write");
    copy = factory.createArray<double>({1, 3}, {2.0, 4.0, 6.0});
    expect(row == copy, "the back-end compares");
    auto buffer = factory.createBuffer<double>(3);
    std::fill_n(buffer.get(), 3, 7.0);
    expect(factory.createArrayFromBuffer<double>({1, 3}, std::move(buffer))[1] == 7.0,
           "a buffer is handed over");
    const Array untyped = row;
    expect(untyped.getType() == ArrayType::DOUBLE && untyped.getDimensions().size() == 2,
           "an array tells what it is");
}

void errorsCross() {
    const std::vector<Thrower> ours = AllErrors::throwers();
    const std::vector<Thrower> theirs = throwersOfBackEnd();
    for (std::size_t k = 0; k < ours.size(); ++k) {
        std::vector<bool> onlyThis(ours.size());
        onlyThis[k] = true;
        expect(AllErrors::caughtBy(theirs[k]) == onlyThis, "an error of the back-end is caught by its type");
        expect(caughtByBackEnd(ours[k]) == onlyThis, "the back-end catches an error of ours by its type");
    }
    const Thrower library = &detail::raise<TypeMismatchException>;
    expect(caughtByBackEnd(library) == AllErrors::caughtBy(&throwOne<TypeMismatchException>),
           "the back-end catches an error of the library by its type");
    expect(catches<InvalidArrayTypeException>([] {
               ArrayFactory().createArray<bool>({1, 3});
           }),
           "an error of the back-end passes through the library");
    expect(catches<EArrayIndexOutOfRange>([] {
               ArrayFactory().createArray<double>({1, 3})[0][3] = 1.0;
           }),
           "the library finds an index out of range");
    expect(catches<Exception>(theirs[0]) && catches<std::exception>(theirs.back()),
           "errors are caught by their base");
}

} // namespace

int main() {
    valuesCross();
    errorsCross();
    std::cout << AllErrors::throwers().size() << " errors, " << faults << " faults\n";
    return faults == 0 ? 0 : 1;
}
