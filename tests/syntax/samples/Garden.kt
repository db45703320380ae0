@file:JvmName("Garden")
package garden

import kotlin.math.*

/* A garden /* with a nested remark */ still in the remark */
data class Bed(val name: String, var area: Double = 1.5e2, val plants: List<Plant> = emptyList())

sealed interface Plant {
    val height: Int?
    object Moss : Plant { override val height: Int? = null }
}

enum class Season(val days: Int) { SPRING(92), SUMMER(0x5E), AUTUMN(0b1011011), WINTER(90) }

// Words inside texts are found with their braces
fun describe(bed: Bed, names: Map<String, Int>): String {
    val short = "Bed ${bed.name} has $count plants \t \"quoted\" \$5 \u00e4"
    val long = "area: ${if (bed.area > 10) "big ${names["x"] ?: 0}" else { "small" }} square"
    val raw = """
        No \n escapes here, but $short and ${bed.plants.map { it.height }.joinToString(", ")}
        "quotes" stay
    """.trimIndent()
    return short + long + raw // all of it
}

@Deprecated("use water instead") @JvmStatic
inline fun <reified T : Any> pour(crossinline how: (T) -> Unit, vararg items: T) {
    for (item in items) how(item)
    items.forEach { if (it == null) return@forEach else println(it) }
    loop@ while (true) { break@loop }
}

suspend fun water(bed: Bed): Result<Unit> = try {
    when (bed.plants.size) {
        0 -> throw IllegalStateException("nothing to water")
        in 1..10 -> Unit
        !in 11..100 -> TODO()
        is Comparable<*> -> println('c')
        else -> print('\'' + "\\" + '\u0041' + '"')
    }
    Result.success(Unit)
} catch (problem: Exception) {
    Result.failure(problem)
} finally {
    // nothing
}

class Shed private constructor(by: Bed) : Comparable<Shed> by by {
    companion object { const val LIMIT = 1_000_000L; private val mask = 0xFF_00u }
    lateinit var owner: String
    var size: Int = 0
        get() = field * 2
        set(value) { if (value >= 0) field = value }
    override operator fun compareTo(other: Shed) = size - other.size
    val open = "not closed
    val next = 'x
    val after = true
}
val text = """ not closed
val inside = 1
