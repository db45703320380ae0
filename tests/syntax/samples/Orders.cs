#nullable enable
using System;
using System.Collections.Generic;

namespace Shop.Orders;

/// <summary>An order as it comes from the counter.</summary>
[Serializable]
public sealed record Order(int Number, string Customer, decimal Total);

/* Keeps the orders of a day;
   "nothing" in here is code. */
public partial class DayBook : IDisposable
{
    private readonly Dictionary<int, Order> orders = new();
    private const double Rate = 0.19, Small = 1e-3;
    private const long Limit = 0xFFFF_FFFF, Bits = 0b1010_0001, Price = 12;
    private static readonly char[] marks = { 'a', '\'', '\\', '\n', '\u00E4', '"' };

    #region Paths and texts
    private string folder = @"C:\orders\new";
    private string quoted = @"He said ""yes"" and
went on to the next line";
    private string plain = "tab\there \"quoted\" \x41 // no comment";
    private string raw = """
        A raw "text" with \n as it stands,
        over lines
        """;
    #endregion

    public int Count => orders.Count;
    public string? Title { get; private set; } = null;

    public async Task<bool> AddAsync(Order order, params string[] notes)
    {
        if (order is null || order.Total < 0m) throw new ArgumentException(nameof(order));
        Console.WriteLine($"Order {order.Number}: {order.Total * (1 + Rate):F2} {{net}}");
        Console.WriteLine($"{(order.Total > 100 ? "big" : "small")} \t {order.Customer}");
        Console.WriteLine($@"{folder}\{order.Number}.txt");
        await Task.Delay(10);
        return orders.TryAdd(order.Number, order);
    }

    public IEnumerable<Order> Large() =>
        from order in orders.Values
        where order.Total >= 1000 && !order.Customer.StartsWith("x")
        orderby order.Number descending
        select order;

    public object this[int index] => orders[index] ?? default!;

#if DEBUG
    public void Dump() { foreach (var pair in orders) Console.WriteLine(pair); }
#endif

    void IDisposable.Dispose()
    {
        var @class = "a name that is a keyword";
        unsafe { int* place = stackalloc int[4]; }
        lock (orders) { orders.Clear(); }
        var open = "not closed
        var next = 1;
    }
} // end of the day
/* not closed
var comment = true;
