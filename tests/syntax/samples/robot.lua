#!/usr/bin/env lua
-- A robot that walks. "Quotes" mean nothing here.
--[[ A long remark
  local hidden = 'x' ]] local seen = true
--[==[ another
  ]] still, ]=] still ]==]

local Robot = {}
Robot.__index = Robot
local LIMIT, MASK, SMALL, HALF = 1000000, 0xFF, 1.5e-3, .5
local HEX = 0x1p4

---@param name string
function Robot.new(name, ...)
  local self = setmetatable({ name = name or "none", steps = { ... }, ["key"] = 1 }, Robot)
  self.text = "the \"first\"\t\65\x41\u{e4} robot\n"
  self.note = 'it\'s -- no comment'
  self.long = [[a long "text" with \n as it is
  over lines]]
  self.longer = [==[ with ]] inside ]==]
  return self
end

function Robot:walk(count)
  if not count or count <= 0 then
    error("cannot walk " .. tostring(count))
  elseif count ~= 1 and count >= LIMIT then
    return nil, false
  else
    for i = 1, #self.steps, 2 do
      local step = self.steps[i]
      if step == nil then break end
      print(string.format("%d: %s", i, step))
    end
  end
  for key, value in pairs(self.steps) do
    if value // 2 == 1 then goto continue end
    self.steps[key] = value ^ 2 % 7 & MASK | 1 << 3
    ::continue::
  end
  repeat count = count - 1 until count < 1
  while true do
    if math.random() > 0.5 then break end
  end
  return function(x) return x * 2 end
end

local ok, problem = pcall(require, "missing.module")
if not ok then io.stderr:write(problem, "\n") end
local co = coroutine.wrap(function() coroutine.yield(table.unpack({ 1, 2 })) end)
local t <const> = { [1] = 'one', two = "2", [[three]] }
local open = "never closed
local next = 'neither
local after = _G.arg
assert(select("#", ...) == 0)
local text = [[never closed
local hidden = 1
