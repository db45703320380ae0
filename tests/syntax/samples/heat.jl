#!/usr/bin/env julia
# Heat in a rod. "Quotes" mean nothing here.
#= A long remark
   #= nested =# still a remark =#
module Heat

using LinearAlgebra: norm, dot
import Base: show, push!
export Rod, step!

const LIMIT = 1_000_000; const MASK = 0xFF; const SMALL = 1.5e-3; const WAVE = 2im

"""
    Rod(length)

A rod with a "length" and `cells`.
"""
mutable struct Rod{T<:Real} <: AbstractVector{T}
    cells::Vector{T}
    name::String
    mark::Char
end

abstract type Body end

Rod(n::Int; name = "the \"first\"\t\u00e4 rod") = Rod(zeros(n), name, 'x')

function step!(rod::Rod{T}, dt::Float64 = 0.1) where {T}
    A = rod.cells
    B = A' * A + transpose(A)' .* 2
    for i in 2:length(A)-1
        A[i] += dt * (A[i-1] - 2A[i] + A[i+1]) / 2^2
        if isnan(A[i]) || A[i] >= LIMIT && !isempty(A)
            throw(ArgumentError("cell $i is $(A[i] > 0 ? "hot" : "cold") in $(rod.name)"))
        elseif A[end] == 0
            break
        else
            continue
        end
    end
    marks = ['a', '\'', '\\', '\n', '"', ' ', '\u00e4', '#']
    return rod
end

macro twice(ex)
    quote
        $(esc(ex)); $(esc(ex))
    end
end

@inline square(x) = x ÷ 2 ⊻ 3
@time @threads for x ∈ 1:10 println(x) end
@assert(true, "fine")
text = """a text with $(join(map(x -> "<$x>", [1, 2]), ", ")) and \$this
over lines "quoted" here"""
re = r"^(\w+)\"=(.*)$"i
raw"C:\new"; b"bytes\x00"; v"1.2.3"
files = run(`ls -l $dir`)
try
    push!(rod.cells, 1.0) |> show
catch problem
    rethrow()
finally
    nothing
end
let x = missing, y = :symbol, z = Inf
    while true; x = x === y ? 1 : 2; end
end
do_it(x) do y; y; end
end # module
text = "never closed
hidden = 1
