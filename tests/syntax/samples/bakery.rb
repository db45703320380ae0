#!/usr/bin/env ruby
require 'set'
require_relative "oven"

=begin
A bakery. "Quotes" and 'marks' mean nothing here.
def hidden; end
=end
module Town
  class Bakery < Shop
    include Enumerable
    attr_reader :name, :breads
    LIMIT = 1_000_000
    MASK, RATE, SMALL = 0xFF, 0.19, 1.5e-3
    @@count = 0

    def initialize(name = "the \"old\" oven\t\u00e4", *breads, hot: true, **options, &block)
      @name, @breads = name, breads
      @@count += 1
      $last = self
      @note = 'it\'s #{not} replaced'
      @long = "a text over
      two lines with #{breads.map { |b| "<#{b.name}>" }.join(', ')} and \#{this}"
    end

    # Bakes, # twice
    def bake!(minutes: 30)
      return nil unless @breads.any? && minutes > 0
      @breads.each do |bread|
        next if bread.done? or bread.nil?
        case bread.kind
        when /rye|wheat/ then puts 'dark'
        when :white, "plain" then print "light", "\n"
        else raise ArgumentError, "unknown: #{bread.kind}" 
        end
      end
      half = minutes / 2; quarter = half / 2
      self
    rescue Burnt, StandardError => problem
      warn problem.message
      retry if half < 10
    ensure
      @hot = false
    end

    def find(text)
      return text if text =~ /^(\w+)\/"(.*)"$/i
      words = %w[rye white "dark"]
      parts = text.split(/\s+/).reject { |part| part.match?(%r{/path/}) }
      hash = { :a => 1, b: 2, 'c' => 3 }
      yield(words + parts) if block_given?
      <<~EOF
        Dear customer, it's #{name} here:
        "bread" # is not a comment
      EOF
    end

    def <=>(other) = @breads.size <=> other.breads.size
    alias size count
    private def secret = defined?(@x) ? 1..10 : 1...20
  end
end

list = %q(it's (here)) + %Q{say "#{1 + 2}"}
BEGIN { puts __FILE__ }
run = `ls #{list}`
lambda = ->(x) { x ** 2 }
until list.empty? do list = list[1..-1] end
print "never closed
def hidden
__END__
text after the end
