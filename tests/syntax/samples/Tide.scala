package harbour.tide

import scala.collection.mutable.{Map => MutableMap}
import scala.util.{Try, Success, Failure}

/** A table of tides. /* nested */ Still a comment. */
sealed trait Tide extends Product with Serializable
case object Ebb extends Tide
final case class Flood(height: Double, hours: Int = 6) extends Tide

object Table:
  val Limit: Long = 1_000_000L
  val mask = 0xFF_FF; val small = 1.5e-3f // one line
  private lazy val names = MutableMap.empty[String, Tide]

  /* what a reader sees */
  def describe(tide: Tide): String = tide match
    case Ebb                      => "ebb \"low\"\n"
    case Flood(h, _) if h > 2.5   => s"flood of $h m, ${if (h > 4) s"high ${h}" else "low"}"
    case flood @ Flood(_, hours)  => f"${flood.height}%2.2f at ${hours + 1} $$5"
    case null                     => throw new IllegalArgumentException("none")

  @tailrec
  def count(n: Int, acc: BigInt = 1): BigInt =
    if n <= 1 then acc else count(n - 1, acc * n)

  @deprecated("use describe", since = "2") def old(): Unit = ()

  val marks = List('a', '\'', '\\', '\n', '\u00e4', '"')
  val raw = raw"C:\new\table"
  val long = """A "long" text with \n as it is,
    ${not here} but over lines"""
  val mixed = s"""the ${names.map { case (k, v) => s"$k=${v}" }.mkString("{", ", ", "}")} end"""

  given Ordering[Flood] with
    def compare(left: Flood, right: Flood): Int = left.height.compare(right.height)

  extension (tide: Tide) inline def isHigh: Boolean = tide match { case Flood(h, _) => h >= 4; case _ => false }

  def macroText(using Quotes): Expr[Int] = '{ 1 + 2 }

  def read(path: String): Try[Seq[Flood]] = for
    lines <- Try(io.Source.fromFile(path).getLines().toSeq)
    floods <- Try(lines.map(_.toDouble).map(Flood(_)))
  yield floods

  type Pairs = [A] =>> List[(A, A)]
  implicit val order: Ordering[Tide] = Ordering.by(_.toString)
  var open = "not closed
  val after: Option[Int] = Some(1) ++ None
  do println(true && !false) while (false)
end Table
/* open /* twice */ still open
val hidden = 1
